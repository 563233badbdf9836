# For programs built with a sanitizer. What Qt, the browser engine and plug-ins leave behind or share between their own
# threads is theirs, and tests fork beside threads; options of the caller come last and win.
set(ENV{ASAN_OPTIONS} "detect_leaks=0:new_delete_type_mismatch=0:$ENV{ASAN_OPTIONS}")
set(ENV{UBSAN_OPTIONS} "print_stacktrace=1:$ENV{UBSAN_OPTIONS}")
string(JOIN ":" thread_options ignore_noninstrumented_modules=1 die_after_fork=0
    suppressions=${CMAKE_CURRENT_LIST_DIR}/tsan.supp $ENV{TSAN_OPTIONS})
set(ENV{TSAN_OPTIONS} ${thread_options})
