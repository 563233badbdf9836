# What leaves a library, decided by name: hidden visibility alone lets the templates of the C++ library out, since their
# namespace says that it is visible, and with them every type of ours that they hold.
#
# Names are mangled ones. Ours begin with a namespace of ours or with the letters of a public class.
set(QW_OUR_NAMES 8platform 2qw)
foreach(letters QW SU HS)
    list(APPEND QW_OUR_NAMES "[0-9]${letters}" "[0-9][0-9]${letters}") # after the length of the name
endforeach()

# qw_write_exports(file): a version script for mold and GNU ld.
function(qw_write_exports file)
    set(patterns
        __cxa_throw # where it stands in for the C++ library's
        "_Z[0-9][0-9]qInitResources_*" "_Z[0-9][0-9]qCleanupResources_*")
    foreach(name IN LISTS QW_OUR_NAMES)
        list(APPEND patterns
            # functions and variables, what stands in functions, guards of both
            "_ZN${name}*" "_ZN[KRO]${name}*" "_ZNK[RO]${name}*"
            "_ZZN${name}*" "_ZZN[KRO]${name}*" "_ZGVN${name}*" "_ZGVZN${name}*" "_ZGVZN[KRO]${name}*"
            # vtables, type information and its name, also of nested classes
            "_ZT[VTIS]${name}*" "_ZT[VTIS]N${name}*" "_ZTC${name}*" "_ZTCN${name}*"
            # what adjusts "this" or a result on the way into a virtual function
            "_ZT[hvc]*_N${name}*" "_ZT[hvc]*_NK${name}*")
        if(name MATCHES "^\\[")
            # functions outside any namespace: by their own name, operators and hashes by the first operand
            list(APPEND patterns "_Z${name}*" "_Z[a-z][a-z]RK${name}*" "_Z5qHashRK${name}*")
        endif()
    endforeach()
    list(JOIN patterns ";\n    " QW_EXPORTED)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/QWExports.map.in ${file} @ONLY)
endfunction()
