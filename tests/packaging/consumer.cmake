# BUILD_DIR, SOURCE_DIR, CXX and FLAGS come from the test. Any failure ends it.
cmake_minimum_required(VERSION 3.25) # links are not followed
include(${SOURCE_DIR}/cmake/QWSanitizerOptions.cmake)

function(run)
    cmake_parse_arguments(arg "" "OUTPUT;ERRORS" "COMMAND" ${ARGN})
    execute_process(COMMAND ${arg_COMMAND} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT status EQUAL 0)
        list(JOIN arg_COMMAND " " line)
        message(FATAL_ERROR "${line}: ${status}\n${output}\n${errors}")
    endif()
    if(arg_OUTPUT)
        set(${arg_OUTPUT} "${output}" PARENT_SCOPE)
    endif()
    if(arg_ERRORS)
        set(${arg_ERRORS} "${errors}" PARENT_SCOPE)
    endif()
endfunction()

function(expect what actual expected)
    if(NOT actual STREQUAL expected)
        message(FATAL_ERROR "${what}: got \"${actual}\", expected \"${expected}\"")
    endif()
endfunction()

run(COMMAND mktemp -d -t qwpackage.XXXXXX OUTPUT work)
set(ENV{HOME} ${work}/home)
set(ENV{QW_LIBRARY_ROOT} ${work}/root)
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{LC_ALL} C.UTF-8)
unset(ENV{DESTDIR})
file(MAKE_DIRECTORY ${work}/home ${work}/root)

run(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${work}/first)
file(RENAME ${work}/first ${work}/moved) # the prefix can be moved
set(prefix ${work}/moved)

file(GLOB_RECURSE exports ${prefix}/*/qwbase_export.h)
cmake_path(SET include NORMALIZE ${exports}/../..)
run(COMMAND python3 ${SOURCE_DIR}/tests/packaging/check-face.py ${include})

# What is built here is what was installed, and the guide and the pages lead to nothing that was not.
file(GLOB_RECURSE guide LIST_DIRECTORIES false ${prefix}/*/host-guide.md)
cmake_path(GET guide PARENT_PATH docs)
set(examples ${docs}/../examples)
file(GLOB pages ${guide} ${docs}/reference/*.md)
foreach(page IN LISTS pages)
    file(READ ${page} text)
    string(REGEX REPLACE "[][;]" "%" text "${text}") # which have a meaning in lists
    string(REGEX MATCHALL "%\\([^) #]+[)#]" links "${text}")
    if(NOT links)
        message(FATAL_ERROR "the installed ${page} leads nowhere")
    endif()
    cmake_path(GET page PARENT_PATH folder)
    list(TRANSFORM links REPLACE "^%\\((.*).$" "${folder}/\\1")
    foreach(target IN LISTS links)
        if(NOT EXISTS "${target}")
            message(FATAL_ERROR "the installed ${page} leads to ${target}, which is not there")
        endif()
    endforeach()
endforeach()

run(COMMAND ${CMAKE_COMMAND} -S ${examples}/consumer -B ${work}/build -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_BUILD_TYPE=Debug)
run(COMMAND ${CMAKE_COMMAND} --build ${work}/build)
run(COMMAND ${work}/build/consumer OUTPUT menu)
expect("menu of a machine without plug-ins" "${menu}" "No plug-ins found")
run(COMMAND ${work}/build/symbolless OUTPUT mapped)
expect("frameworks of a host that uses no symbol" "${mapped}" "libQWUtilities.so.A\nlibQWBase.so.A\nlibQWPlatform.so.A")

# A host that uses something of everything.
run(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/packaging/host -B ${work}/host -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_BUILD_TYPE=Debug)
run(COMMAND ${CMAKE_COMMAND} --build ${work}/host)
run(COMMAND ${work}/host/everything OUTPUT used)
# A class all of whose virtuals have bodies in its header would leave its table to every program.
run(COMMAND nm --demangle --defined-only ${work}/host/everything OUTPUT defined)
if(defined MATCHES "vtable for (QW|platform::|qw::)[^\n]*")
    message(FATAL_ERROR "a host carries the ${CMAKE_MATCH_0}")
endif()
expect("what a host can use" "${used}" "everything")

# Helper programs, in their frameworks and in bin.
file(GLOB_RECURSE readers ${prefix}/qw-lv2-reader)
list(GET readers 0 reader)
run(COMMAND ${reader} 512 20 10 OUTPUT greeting)
expect("reader of LV2 bundles" "${greeting}" "QWL1")
run(COMMAND ${prefix}/bin/qw-wrap-vst --folder ${work}/none OUTPUT summary)
expect("wrapper of VST libraries" "${summary}" "0 added, 0 updated, 0 removed, 0 unchanged, 0 failed")

# The host of the guide: launches, opens two windows, quits. An exception would stand in its log; of an interface file
# that lacks something it tells on standard error.
run(COMMAND ${CMAKE_COMMAND} -S ${examples}/guide -B ${work}/guide -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_BUILD_TYPE=Debug)
run(COMMAND ${CMAKE_COMMAND} --build ${work}/guide)
set(ENV{LV2_PATH} ${work}/none)
file(WRITE ${work}/home/Library/Preferences/com.example.myhost.plist # this machine's own devices are left alone
    "<plist version=\"1.0\"><dict><key>Use Controllers</key><false/></dict></plist>")
function(try_guide what program)
    run(COMMAND ${program} myhost://preferences myhost://about myhost://quit ERRORS told)
    string(REGEX MATCHALL "Interface file [^\n]*" lacking "${told}")
    expect("interface files of ${what}" "${lacking}" "")
    set(log "")
    if(EXISTS "${work}/home/Library/Logs/Quorwell/My Host.log")
        file(READ "${work}/home/Library/Logs/Quorwell/My Host.log" log)
    endif()
    expect("log of ${what}" "${log}" "")
endfunction()
try_guide("the guide's host" ${work}/guide/MyHost.app/Contents/MacOS/MyHost)

# Shipped: what it needs of the library is in its bundle, wherever that lies, and the desktop finds name and icon.
run(COMMAND ${CMAKE_COMMAND} --install ${work}/guide --prefix ${work}/packed)
file(RENAME ${work}/packed ${work}/shipped)
file(RENAME ${prefix} ${work}/away)
try_guide("the shipped host" ${work}/shipped/bin/MyHost)
file(RENAME ${work}/away ${prefix})
file(READ ${work}/shipped/share/applications/com.example.myhost.desktop entries)
foreach(entry Exec Icon)
    string(REGEX MATCH "\n${entry}=([^ \n]*)" found "${entries}")
    set(${entry} ${CMAKE_MATCH_1})
endforeach()
foreach(file bin/${Exec} share/icons/hicolor/scalable/apps/${Icon}.svg)
    if(NOT EXISTS ${work}/shipped/${file})
        message(FATAL_ERROR "the desktop file of the shipped host names ${file}, which is not there")
    endif()
endforeach()

file(GLOB_RECURSE pc ${prefix}/QWUtilities.pc)
cmake_path(GET pc PARENT_PATH pc_dir)
set(ENV{PKG_CONFIG_PATH} ${pc_dir})
run(COMMAND pkg-config --cflags --libs QWUtilities OUTPUT flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(COMMAND ${CXX} -std=c++20 ${FLAGS} ${examples}/consumer/main.cpp -o ${work}/with-pkg-config ${flags})
run(COMMAND ${work}/with-pkg-config OUTPUT menu)
expect("menu of the host built with pkg-config" "${menu}" "No plug-ins found")

file(REMOVE_RECURSE ${work})
