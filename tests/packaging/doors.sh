#!/usr/bin/env bash
# What ./test and scripts/shake promise, in a tree of their own whose build is done and whose tests are three: one passes,
# one fails every third time, one fails when it is told to. The argument is the tree they come from.
set -euo pipefail
tree=$(mktemp -d -t qwdoors.XXXXXX)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree"/{scripts,bin,build/dev}
cp "$1"/scripts/{setup.sh,shake} "$tree/scripts"
cp "$1/test" "$tree"
: >"$tree/scripts/packages"
: >"$tree/build/dev/build.ninja"
cat >"$tree/bin/ninja" <<'END'
#!/usr/bin/env bash
case " $* " in *" -n "*) [ -n "${QW_TO_BUILD:-}" ] || echo "ninja: no work to do."; exit 0 ;; esac
for step in ${QW_TO_BUILD:-}; do echo "[$step] Building"; sleep 0.1; done
exit "${QW_BUILD_STATUS:-0}"
END
chmod +x "$tree/bin/ninja"
cat >"$tree/build/dev/CTestTestfile.cmake" <<END
add_test(tst_good true)
add_test(tst_now_and_then bash -c "echo x >>$tree/runs; echo because of the moon; [ \$((\$(wc -l <$tree/runs) % 3)) != 0 ]")
add_test(tst_told bash -c "[ ! -e $tree/fail ]")
END
export PATH=$tree/bin:$PATH
unset QW_TELL_EVERY

fail() {
    printf '%s\n' "$1" "--- its output:" "$output" >&2
    exit 1
}

# expect STATUS COMMAND...: leaves what it printed in $output.
expect() {
    local wanted=$1 status=0
    shift
    output=$("$@" 2>&1 </dev/null) || status=$?
    [ "$status" = "$wanted" ] || fail "$* ended with $status instead of $wanted"
}
says() { grep -q -- "$1" <<<"$output" || fail "missing: $1"; }
lacks() { ! grep -q -- "$1" <<<"$output" || fail "unwanted: $1"; }

# The time of build and tests, the slowest tests, and the status of the tests.
expect 0 "$tree/test" -E now
says 'Built in [0-9]* s'
says 'Tested in [0-9]* s\. What took longest'
says '[0-9]\.[0-9] s  tst_good'
lacks 'tst_now_and_then$'
touch "$tree/fail"
expect 8 "$tree/test" -E now
says 'with failures'
rm "$tree/fail"

# A build that is not done: now and then a line where there is no terminal, each step where there is one.
export QW_TO_BUILD='1/3 2/3 3/3'
expect 0 "$tree/test" -R good
lacks '\[./3\]'
expect 0 env QW_TELL_EVERY=0 "$tree/test" -R good
says '^  \[1/3\] Building$'
expect 0 script -qec "'$tree/test' -R good" /dev/null
says '\[2/3\] Building'
expect 1 env QW_BUILD_STATUS=1 "$tree/test" -R good
says 'That failed'
unset QW_TO_BUILD

# One test many times, whose failures are counted and whose words are kept.
expect 0 "$tree/scripts/shake" --times 2 tst_good
says 'tst_good never failed'
: >"$tree/runs"
expect 1 "$tree/scripts/shake" --times 6 tst_now_and_then
says 'Round 3 of 6: failed: tst_now_and_then (Failed)'
says '2 tst_now_and_then (Failed) (times)'
[ "$(ls "$tree/build/dev/shake" | tr '\n' ' ')" = "failed.txt round-3.log round-6.log " ] || fail "other logs were kept"
grep -q 'because of the moon' "$tree/build/dev/shake/round-6.log" || fail "the log does not say why"
: >"$tree/runs"
expect 1 "$tree/scripts/shake" --times 3
says 'Round 1 of 3: passed'
expect 1 "$tree/scripts/shake" --times 1 tst_unknown
says 'Nothing was tested'
expect 2 "$tree/scripts/shake" --often
says 'no option --often'

# Whoever ends it ends what keeps the processors busy, and nobody else.
still() { grep -qs "$tree/scripts/[s]hake" /proc/[0-9]*/cmdline; }
gone() { for _ in $(seq 300); do still || return 0; sleep 0.1; done; return 1; }
gone || fail "something was left behind"
for signal in TERM KILL; do
    "$tree/scripts/shake" --times 1000 tst_good >/dev/null 2>&1 &
    until still; do sleep 0.1; done
    kill -$signal $!
    wait $! 2>/dev/null || true
    gone || fail "busy loops outlive SIG$signal"
done
