# The library as others take it up: headers, static libraries, and how CMake and pkg-config find them.
include(CMakePackageConfigHelpers)

set(layers files platform streams encoding foundation CoreServices CoreFoundation)
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/wuxfoundation)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/WUXFoundation)

foreach(folder foundation streams encoding platform files/mac CoreFoundation CoreServices)
    install_folders(library ${headers}/${folder})
endforeach()
install_folders(library ${package} ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(TARGETS ${layers} EXPORT WUXFoundation
    ARCHIVE COMPONENT library
    FILE_SET HEADERS DESTINATION ${headers} COMPONENT library)
# The installed headers need none of these; on a consumer's search path they would tell its configuration
# that it is on another system.
install(TARGETS FileCalls EXPORT WUXFoundation
    ARCHIVE COMPONENT library
    FILE_SET HEADERS DESTINATION ${headers} COMPONENT unused EXCLUDE_FROM_ALL)
install(EXPORT WUXFoundation NAMESPACE WUXFoundation:: FILE WUXFoundationTargets.cmake
    DESTINATION ${package} COMPONENT library)

configure_package_config_file(cmake/WUXFoundationConfig.cmake.in
    ${PROJECT_BINARY_DIR}/WUXFoundationConfig.cmake INSTALL_DESTINATION ${package}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/WUXFoundationConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/WUXFoundationConfig.cmake
              ${PROJECT_BINARY_DIR}/WUXFoundationConfigVersion.cmake
    DESTINATION ${package} COMPONENT library)

# The way from the description to the prefix, so that the tree may be moved.
file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" up "${up}")
configure_file(cmake/wuxfoundation.pc.in ${PROJECT_BINARY_DIR}/wuxfoundation.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/wuxfoundation.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT library)
