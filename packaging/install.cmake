# What `cmake --install` puts where, and the Debian package that CPack makes of it.

include(GNUInstallDirs)

# With the version, and compressed as the distribution wants them.
configure_file(packaging/sarkelo.1.in packaging/sarkelo.1 @ONLY)
configure_file(packaging/changelog packaging/changelog COPYONLY)
foreach(page sarkelo.1 changelog)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/${page}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND gzip -9nc packaging/${page} > ${page}.gz
    DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/packaging/${page} VERBATIM)
  list(APPEND compressed_pages ${compressed})
endforeach()
add_custom_target(compressed_pages ALL DEPENDS ${compressed_pages})

install(TARGETS sarkelo)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/sarkelo.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/sarkelo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/invalid.sarkelo.Sarkelo.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/completion.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME sarkelo)
foreach(size 48 128 256)
  install(FILES packaging/icons/sarkelo-${size}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps RENAME sarkelo.png)
endforeach()
install(FILES packaging/copyright README.md ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
# Without the scripts that make its pictures: they need a clone.
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN "*.sh" EXCLUDE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The authors of Sarkelo <authors@sarkelo.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libgl1-mesa-dri")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "grower and viewer of diffusion limited aggregates")
set(CPACK_PACKAGE_DESCRIPTION "Sarkelo grows branching aggregates in three dimensions by diffusion limited
aggregation, exactly and reproducibly, and shows them growing in a window.
Growth is steered from a menu, keys and panels, can be confined by a
triangulated surface, is measured (branch distribution, box counting), and
is saved for rendering, printing and further work (POV-Ray, VRML, GEOM, DXF,
STL, text).")
include(CPack)
