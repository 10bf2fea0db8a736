# What `cmake --install` puts where, and the two Debian packages that CPack makes of it: sarkelo, the windows, and sarkelo-grow,
# which needs no X11 and no OpenGL.

include(GNUInstallDirs)

# With the version, and compressed as the distribution wants them.
configure_file(packaging/changelog packaging/changelog COPYONLY)
foreach(program sarkelo sarkelo-grow sarkelo-view)
  configure_file(packaging/${program}.1.in packaging/${program}.1 @ONLY)
endforeach()
foreach(page sarkelo.1 sarkelo-grow.1 sarkelo-view.1 changelog)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/${page}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND gzip -9nc packaging/${page} > ${page}.gz
    DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/packaging/${page} VERBATIM)
  list(APPEND compressed_pages ${compressed})
endforeach()
add_custom_target(compressed_pages ALL DEPENDS ${compressed_pages})

# install_program(NAME PACKAGE): a program, its manual page and completion.
function(install_program name package)
  install(TARGETS ${name} COMPONENT ${package})
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${package})
  install(FILES packaging/completion-${name}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME ${name} COMPONENT ${package})
endfunction()
foreach(package sarkelo sarkelo-grow)
  install(FILES packaging/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${package})
endforeach()

install_program(sarkelo-grow sarkelo-grow)
install(FILES docs/recipes.md docs/file-formats.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sarkelo-grow COMPONENT sarkelo-grow)
install(FILES docs/pictures/elsewhere.png DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sarkelo-grow/pictures COMPONENT sarkelo-grow)
file(GLOB recipes docs/gallery/*.toml)
install(FILES ${recipes} docs/gallery/row.txt examples/radius_by_number.py
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sarkelo-grow/examples COMPONENT sarkelo-grow)

if(SARKELO_VIEWER)
  install_program(sarkelo sarkelo)
  install_program(sarkelo-view sarkelo)
  install(FILES packaging/sarkelo-aggregate.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME sarkelo.xml COMPONENT sarkelo)
  install(FILES packaging/sarkelo.desktop packaging/sarkelo-view.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT sarkelo)
  install(FILES packaging/invalid.sarkelo.Sarkelo.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT sarkelo)
  foreach(size 48 128 256)
    install(FILES packaging/icons/sarkelo-${size}.png
      DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps RENAME sarkelo.png COMPONENT sarkelo)
    install(FILES packaging/icons/sarkelo-${size}.png
      DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/mimetypes RENAME application-x-sarkelo-aggregate.png
      COMPONENT sarkelo)
  endforeach()
  install(FILES README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sarkelo COMPONENT sarkelo)
  # Without the scripts that make its pictures: they need a clone.
  install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sarkelo COMPONENT sarkelo
    PATTERN "*.sh" EXCLUDE PATTERN "*.py" EXCLUDE)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The authors of Sarkelo <authors@sarkelo.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has a description of its own
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_SARKELO_PACKAGE_NAME sarkelo)
set(CPACK_DEBIAN_SARKELO_PACKAGE_DEPENDS "libgl1-mesa-dri, libegl-mesa0")
set(CPACK_DEBIAN_SARKELO-GROW_PACKAGE_NAME sarkelo-grow)
set(CPACK_DEBIAN_SARKELO_DESCRIPTION "grower and viewer of diffusion limited aggregates
Sarkelo grows branching aggregates in three dimensions by diffusion limited
aggregation, exactly and reproducibly, and shows them growing in a window.
Growth is steered from a menu, keys and panels, can be confined by a
triangulated surface, is measured (branch distribution, box counting), and
is saved for rendering, printing and further work (POV-Ray, VRML, GEOM, DXF,
STL, text).")
set(CPACK_DEBIAN_SARKELO-GROW_DESCRIPTION "grower of diffusion limited aggregates without a window
sarkelo-grow grows branching aggregates in three dimensions by diffusion
limited aggregation, from a recipe in a text file, exactly as the window of
sarkelo does. It keeps them in HDF5 files from which growth goes on as if it
had never stopped, and saves them for rendering, printing and further work.")
include(CPack)
