# The reference, as pages for a browser: cmake --build build/<preset> --target docs, then docs/html/index.html in the
# build folder. A warning of doxygen's ends it, so nothing public lacks its comment; then the pages are checked.
find_program(QW_DOXYGEN doxygen)
set(QW_DOCS_DIR ${CMAKE_BINARY_DIR}/docs)
set(QW_DOCS_INPUT "${CMAKE_SOURCE_DIR}/docs/host-guide.md ${CMAKE_SOURCE_DIR}/docs/reference")
foreach(folder IN LISTS QW_FACE_FOLDERS)
    string(APPEND QW_DOCS_INPUT " ${CMAKE_SOURCE_DIR}/QWCore/${folder}")
endforeach()
file(GLOB dark_pictures CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/pictures/*-dark.png)
list(JOIN dark_pictures " " QW_DOCS_DARK_PICTURES)
configure_file(docs/reference/look/Doxyfile.in ${QW_DOCS_DIR}/Doxyfile @ONLY)

if(QW_DOXYGEN)
    add_custom_target(docs
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${QW_DOCS_DIR}/html
        COMMAND ${QW_DOXYGEN} ${QW_DOCS_DIR}/Doxyfile
        COMMAND python3 ${CMAKE_SOURCE_DIR}/docs/reference/look/check.py ${QW_DOCS_DIR}/html
        COMMENT "Reference: ${QW_DOCS_DIR}/html/index.html" VERBATIM)
else()
    add_custom_target(docs
        COMMAND ${CMAKE_COMMAND} -E echo "The reference is made by doxygen, which is missing. Install it: apt-get install doxygen"
        COMMAND ${CMAKE_COMMAND} -E false VERBATIM)
endif()
