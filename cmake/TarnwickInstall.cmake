# What `cmake --install` puts in place of the device library, so that another project can
# find_package(Tarnwick) it. Its component is "devel".
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# tarnwick_install(<folder> <header>...): a folder's library as Tarnwick::<folder>, and its public
# headers as <tarnwick/...>. Nothing else of the folder gets out.
add_custom_target(tarnwick_headers ALL)
function(tarnwick_install folder)
  set(target tarnwick_${folder})
  set(installed "")
  foreach(header IN LISTS ARGN)
    set(source ${PROJECT_SOURCE_DIR}/src/${folder}/${header})
    set(script ${PROJECT_SOURCE_DIR}/cmake/InstalledHeader.cmake)
    set(output ${PROJECT_BINARY_DIR}/include/tarnwick/${header})
    add_custom_command(OUTPUT ${output} DEPENDS ${source} ${script} VERBATIM
      COMMAND ${CMAKE_COMMAND} -D SOURCE=${source} -D OUTPUT=${output} -P ${script})
    list(APPEND installed ${output})
  endforeach()
  add_custom_target(${target}_headers DEPENDS ${installed})
  add_dependencies(tarnwick_headers ${target}_headers)
  install(FILES ${installed} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarnwick COMPONENT devel)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${folder})
  install(TARGETS ${target} EXPORT TarnwickLibraries COMPONENT devel
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
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
