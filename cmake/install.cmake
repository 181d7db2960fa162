# What the program is installed with, and the Debian package made of it.
include(GNUInstallDirs)
set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orvvalis)

# Manual page, from the descriptions of the arguments.
set(manual_page ${CMAKE_CURRENT_BINARY_DIR}/orvvalis.1)
set(changes ${CMAKE_CURRENT_BINARY_DIR}/NEWS.gz)
add_custom_command(OUTPUT ${manual_page}.gz
  COMMAND orvvalis --man-page > ${manual_page}
  COMMAND gzip -9nkf ${manual_page}
  DEPENDS orvvalis VERBATIM)
add_custom_command(OUTPUT ${changes}
  COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md > ${changes}
  DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md VERBATIM)
add_custom_target(manual_page ALL DEPENDS ${manual_page}.gz ${changes})

install(TARGETS orvvalis RUNTIME)
if(TARGET orv_calc_helper)
  install(TARGETS orv_calc_helper RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/orvvalis)
endif()
install(FILES ${manual_page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(DIRECTORY textures examples docs DESTINATION ${CMAKE_INSTALL_DATADIR}/orvvalis
        PATTERN "*.py" EXCLUDE PATTERN ".~lock*" EXCLUDE)
install(FILES packaging/orvvalis.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/orvvalis.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES packaging/orvvalis-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME orvvalis.xml)
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${changes} DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvvalis)
set(CPACK_PACKAGE_VENDOR "OrvValis")
set(CPACK_PACKAGE_CONTACT "OrvValis developers <orvvalis@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "what an electric thruster's plume does to a satellite")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is loaded while it runs: OpenGL without hardware, the windows' platform, fonts.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libgl1-mesa-dri, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ffmpeg")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libreoffice-calc")
set(CPACK_PACKAGE_DESCRIPTION "The model is a worksheet: plates, cylinders, cones and dishes divided into
cells, one thruster, a database of gases and materials. For every cell the
program computes plume density, current, energy, shadows, erosion,
redeposition, heat flux and forces, and shows the result in an interactive
3-D plot.")
include(CPack)
