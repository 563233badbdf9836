# Lays a shared library out as a framework, alike in the build tree and when installed:
#   lib/X.framework/Versions/A/libX.so.A        the library; Resources/ and helper programs beside it
#   lib/X.framework/Versions/Current -> A
#   lib/X.framework/X -> Versions/Current/libX.so.A
#   lib/libX.so.A -> X.framework/Versions/A/libX.so.A   for hosts whose rpath names lib/
set(QW_LIB_DIR ${CMAKE_BINARY_DIR}/lib)
set(QW_GENERATED_DIR ${CMAKE_BINARY_DIR}/generated)
include(GenerateExportHeader)
include(QWExports)
set(QW_EXPORTS ${QW_GENERATED_DIR}/exports.map)
qw_write_exports(${QW_EXPORTS})

function(qw_add_framework name)
    cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    string(TOLOWER ${name} lower)
    set(version_dir ${QW_LIB_DIR}/${name}.framework/Versions/A)
    add_library(${name} SHARED ${arg_SOURCES})
    add_library(QWUtilities::${name} ALIAS ${name})
    generate_export_header(${name} EXPORT_FILE_NAME ${QW_GENERATED_DIR}/${name}/${lower}_export.h)
    string(TOUPPER ${name} upper)
    set(test_export ${upper}_NO_EXPORT) # said aloud: a class within an exported one would be so too
    if(BUILD_TESTING)
        set(test_export ${upper}_EXPORT)
    endif()
    configure_file(${CMAKE_SOURCE_DIR}/cmake/QWPrivateExport.h.in ${QW_GENERATED_DIR}/${name}/${lower}_private.h @ONLY)
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/QWCore> $<BUILD_INTERFACE:${QW_GENERATED_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/QWCore>)
    target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:qw_warnings>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    # -fPIC: the bundle of an object's class is found from its vtable, which must stay in its library.
    target_compile_options(${name} INTERFACE -fPIC)
    # Nobody puts functions of his own in the place of ours, so calls within a library are direct, and can be inlined.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    target_link_options(${name} PRIVATE LINKER:-z,nodelete LINKER:--version-script=${QW_EXPORTS})
    # A host may use no symbol of a framework and still wants its categories.
    target_link_options(${name} INTERFACE LINKER:--no-as-needed)
    set_target_properties(${name} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${version_dir}
        SOVERSION A
        LINK_DEPENDS ${QW_EXPORTS}
        BUILD_WITH_INSTALL_RPATH ON
        INSTALL_RPATH "$ORIGIN;$ORIGIN/..;$ORIGIN/../../.."
        UNITY_BUILD ${QW_UNITY}
        UNITY_BUILD_MODE BATCH
        EXPORT_NAME ${name})
    qw_precompile(${name})
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DLIB_DIR=${QW_LIB_DIR} -P ${CMAKE_SOURCE_DIR}/cmake/QWFrameworkLinks.cmake
        VERBATIM)
    set_property(GLOBAL APPEND PROPERTY QW_FRAMEWORKS ${name})
endfunction()

# Copies resource files into Versions/A/Resources of a framework, at build time, when they changed.
function(qw_framework_resources name)
    set(target_dir ${QW_LIB_DIR}/${name}.framework/Versions/A/Resources)
    foreach(file IN LISTS ARGN)
        cmake_path(GET file FILENAME base)
        add_custom_command(OUTPUT ${target_dir}/${base}
            COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${file} ${target_dir}/${base}
            DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file} VERBATIM)
        list(APPEND outputs ${target_dir}/${base})
    endforeach()
    add_custom_target(${name}_resources ALL DEPENDS ${outputs})
    add_dependencies(${name} ${name}_resources)
endfunction()

# Renders an SVG resource at build time as <name>.png, SIZE points square, and <name>@2x.png for finer screens.
function(qw_framework_icon name svg size)
    cmake_path(GET svg STEM base)
    math(EXPR double_size "2 * ${size}")
    set(icon ${QW_LIB_DIR}/${name}.framework/Versions/A/Resources/${base})
    add_custom_command(OUTPUT ${icon}.png ${icon}@2x.png
        COMMAND qw-render-icon ${CMAKE_CURRENT_SOURCE_DIR}/${svg} ${icon}.png ${size} ${icon}@2x.png ${double_size}
        DEPENDS qw-render-icon ${CMAKE_CURRENT_SOURCE_DIR}/${svg} VERBATIM)
    add_custom_target(${name}_${base} ALL DEPENDS ${icon}.png ${icon}@2x.png)
    add_dependencies(${name} ${name}_${base})
endfunction()
