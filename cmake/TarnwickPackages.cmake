# The Debian packages: tarnwick with the programs, libtarnwick-dev with the device library.
# `cpack` in a build of the preset "package" makes them; packaging/check-packages.sh does so and tries them out.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarnwick)
set(CPACK_PACKAGE_CONTACT "The Tarnwick developers <maintainers@tarnwick.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/StripArchives.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL tarnwick devel)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_DEBIAN_TARNWICK_PACKAGE_NAME tarnwick)
set(CPACK_DEBIAN_TARNWICK_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_TARNWICK_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TARNWICK_DESCRIPTION "serial-port terminal for radio modules
Tarnwick opens a serial port and shows what arrives as text or in
hexadecimal, with time stamps and frames, and saves it as it came. It sends
typed text, hexadecimal bytes, files and a list of prepared strings, and works
out their checksums. Its user interface comes in Chinese and English.
.
The workbench puts new firmware into radio modules, several at once, and shows
how that goes. From the shell, tarnwickctl upgrades, configures and searches
for radio modules, and tarnwick-sim plays them.")

set(CPACK_DEBIAN_DEVEL_PACKAGE_NAME libtarnwick-dev)
set(CPACK_DEBIAN_DEVEL_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVEL_DESCRIPTION "library that talks to radio modules (development files)
Links over serial ports and sockets, framers that stack on them, and device
dialogues on top: firmware upgrade, AT settings, search.
.
This package holds the headers, the static libraries, the files for CMake's
find_package and examples.")
if(TARNWICK_QT EQUAL 5)
  set(CPACK_DEBIAN_TARNWICK_PACKAGE_RECOMMENDS "qttranslations5-l10n")
  set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "qtbase5-dev, libqt5serialport5-dev")
else()
  set(CPACK_DEBIAN_TARNWICK_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-qpa-plugins")
  set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "qt6-base-dev, qt6-serialport-dev")
endif()
string(APPEND CPACK_DEBIAN_TARNWICK_PACKAGE_RECOMMENDS ", fonts-noto-cjk")
set(CPACK_DEBIAN_TARNWICK_PACKAGE_SUGGESTS "wireshark")

foreach(component_and_package tarnwick:tarnwick devel:libtarnwick-dev)
  string(REPLACE ":" ";" pair ${component_and_package})
  list(GET pair 0 component)
  list(GET pair 1 package)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
  install(FILES ${packaging}/deb/copyright DESTINATION ${documents} COMPONENT ${component})
  tarnwick_install_compressed(${packaging}/deb/changelog changelog
    DESTINATION ${documents} COMPONENT ${component})
endforeach()
install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarnwick COMPONENT tarnwick)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libtarnwick-dev COMPONENT devel)

include(CPack)
