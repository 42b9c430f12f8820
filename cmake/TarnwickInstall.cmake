# What `cmake --install` puts in place of the device library, so that another project can
# find_package(Tarnwick) it. Its component is "devel".
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# tarnwick_install(<folder> [PRIVATE <header>...]): a folder's library as Tarnwick::<folder>, and
# its headers but the private ones.
function(tarnwick_install folder)
  cmake_parse_arguments(INSTALL "" "" "PRIVATE" ${ARGN})
  set(target tarnwick_${folder})
  get_target_property(headers ${target} SOURCES)
  list(FILTER headers INCLUDE REGEX "\\.h$")
  list(REMOVE_ITEM headers ${INSTALL_PRIVATE})
  list(TRANSFORM headers PREPEND ${PROJECT_SOURCE_DIR}/src/${folder}/)
  install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarnwick COMPONENT devel)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${folder})
  install(TARGETS ${target} EXPORT TarnwickLibraries COMPONENT devel
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarnwick)
endfunction()

# The files that find_package reads. Call it once, after tarnwick_install of every folder.
function(tarnwick_install_package)
  set(destination ${CMAKE_INSTALL_LIBDIR}/cmake/Tarnwick)
  configure_package_config_file(cmake/TarnwickConfig.cmake.in ${PROJECT_BINARY_DIR}/TarnwickConfig.cmake
    INSTALL_DESTINATION ${destination})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/TarnwickConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/TarnwickConfig.cmake ${PROJECT_BINARY_DIR}/TarnwickConfigVersion.cmake
    DESTINATION ${destination} COMPONENT devel)
  install(EXPORT TarnwickLibraries NAMESPACE Tarnwick:: DESTINATION ${destination} COMPONENT devel)
endfunction()
