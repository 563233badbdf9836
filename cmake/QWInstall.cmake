# The frameworks with their links, headers, resources and helper programs, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)
get_property(frameworks GLOBAL PROPERTY QW_FRAMEWORKS)

foreach(name IN LISTS frameworks)
    string(TOLOWER ${name} lower)
    set(version_dir ${CMAKE_INSTALL_LIBDIR}/${name}.framework/Versions/A)
    install(TARGETS ${name} EXPORT QWUtilitiesTargets LIBRARY DESTINATION ${version_dir} NAMELINK_SKIP)
    install(DIRECTORY ${QW_LIB_DIR}/${name}.framework/Versions/A/
        DESTINATION ${version_dir} USE_SOURCE_PERMISSIONS PATTERN "lib${name}.so*" EXCLUDE)
    install(CODE "set(NAME ${name})
        set(LIB_DIR \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}\")
        include(\"${CMAKE_SOURCE_DIR}/cmake/QWFrameworkLinks.cmake\")")
    install(FILES ${QW_GENERATED_DIR}/${name}/${lower}_export.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/QWCore/${name} COMPONENT headers)
endforeach()

# The face; no header of the rooms below.
foreach(folder IN LISTS QW_FACE_FOLDERS)
    file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/QWCore/${folder}/*.h)
    install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/QWCore/${folder} COMPONENT headers)
endforeach()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QWUtilities)
install(EXPORT QWUtilitiesTargets NAMESPACE QWUtilities:: DESTINATION ${package_dir})
configure_package_config_file(cmake/QWUtilitiesConfig.cmake.in ${CMAKE_BINARY_DIR}/QWUtilitiesConfig.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/QWUtilitiesConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/QWUtilitiesConfig.cmake ${CMAKE_BINARY_DIR}/QWUtilitiesConfigVersion.cmake
    DESTINATION ${package_dir})

# Relative to the file's own place, so that the prefix can be moved.
file(RELATIVE_PATH QW_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/QWUtilities.pc.in ${CMAKE_BINARY_DIR}/QWUtilities.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/QWUtilities.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The guide and the pages of the reference, beside their pictures and the code that they show as in the source tree, so that
# their links lead to it.
install(FILES docs/host-guide.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)
install(DIRECTORY docs/reference DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs FILES_MATCHING PATTERN "*.md" PATTERN look EXCLUDE)
install(DIRECTORY docs/pictures DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs PATTERN "*-dark.png" EXCLUDE)
install(DIRECTORY examples/consumer examples/guide examples/host examples/snippets
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
