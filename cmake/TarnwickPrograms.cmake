# What `cmake --install` puts in place of the programs: themselves, man pages, completion, and what a
# desktop shows of the window. Their component is "tarnwick".
include(GNUInstallDirs)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

# tarnwick_install_compressed(<file> <name> DESTINATION <folder> COMPONENT <component>): a file as
# <name>.gz, without a time stamp in it, so that two builds of one source are equal.
find_program(GZIP gzip REQUIRED)
function(tarnwick_install_compressed file name)
  cmake_parse_arguments(INSTALL "" "DESTINATION;COMPONENT" "" ${ARGN})
  set(compressed ${PROJECT_BINARY_DIR}/compressed/${INSTALL_COMPONENT}/${name}.gz)
  string(MAKE_C_IDENTIFIER compress_${INSTALL_COMPONENT}_${name} target)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${GZIP} -9nc ${file} > ${compressed}
    DEPENDS ${file})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/compressed/${INSTALL_COMPONENT})
  add_custom_target(${target} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${INSTALL_DESTINATION} COMPONENT ${INSTALL_COMPONENT})
endfunction()

foreach(program tarnwick tarnwick-workbench tarnwickctl tarnwick-sim)
  if(TARGET ${program})
    install(TARGETS ${program} COMPONENT tarnwick)
    tarnwick_install_compressed(${packaging}/man/${program}.1 ${program}.1
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tarnwick)
    if(EXISTS ${packaging}/bash-completion/${program})
      install(FILES ${packaging}/bash-completion/${program}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tarnwick)
    endif()
  endif()
endforeach()
if(NOT TARNWICK_GUI)
  return()
endif()
install(FILES ${packaging}/tarnwick.desktop ${packaging}/tarnwick-workbench.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT tarnwick)
install(FILES ${packaging}/org.tarnwick.Tarnwick.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT tarnwick)
install(DIRECTORY ${packaging}/icons/
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor COMPONENT tarnwick)
install(FILES ${PROJECT_SOURCE_DIR}/src/resources/icon/title_corvane.svg RENAME tarnwick.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT tarnwick)
