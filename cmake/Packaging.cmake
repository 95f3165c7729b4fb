# Installation and the Debian package (cpack -G DEB in the build folder): the two programs,
# the desktop entry and the icons, the man pages, the licence and the notice file, with the
# Depends line worked out from the libraries the programs link (dpkg-shlibdeps).
include(GNUInstallDirs)

install(TARGETS quillet QuilletPro RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/packaging/quilletpro.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
foreach(size 16 24 32 48 64 128 256)
    install(FILES ${PROJECT_SOURCE_DIR}/resources/icons/quilletpro-${size}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps RENAME quilletpro.png)
endforeach()

# The about box finds the notice file beside the program (in the build folder) or in
# ../share/doc/quilletpro/ (installed).
configure_file(${PROJECT_SOURCE_DIR}/THIRD-PARTY-NOTICES.txt ${CMAKE_BINARY_DIR}/src/app/THIRD-PARTY-NOTICES.txt COPYONLY)
if(WIN32)
    # Windows keeps everything in the program's folder.
    install(FILES ${PROJECT_SOURCE_DIR}/THIRD-PARTY-NOTICES.txt DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME LICENSE.txt)
    return()
endif()

# Man pages go in compressed, as Debian wants them (-n: no name or time stamp inside).
find_program(QP_GZIP gzip REQUIRED)
foreach(page quillet.1 QuilletPro.1)
    set(compressed ${CMAKE_CURRENT_BINARY_DIR}/man/${page}.gz)
    add_custom_command(OUTPUT ${compressed}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/man
        COMMAND ${QP_GZIP} -9nc ${PROJECT_SOURCE_DIR}/docs/man/${page} > ${compressed}
        DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/${page})
    list(APPEND qp_man_pages ${compressed})
endforeach()
add_custom_target(man_pages ALL DEPENDS ${qp_man_pages})
install(FILES ${qp_man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(FILES ${PROJECT_SOURCE_DIR}/THIRD-PARTY-NOTICES.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quilletpro)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quilletpro RENAME copyright)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quilletpro)
set(CPACK_PACKAGE_VENDOR "Quillet Pro")
set(CPACK_PACKAGE_CONTACT "Quillet Pro developers <quilletpro-dev@users.noreply.github.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "batch file renamer with preview and undo")
set(CPACK_PACKAGE_DESCRIPTION
    "Quillet Pro renames many files and folders at once: stack rename commands, see every new name beside the current one, apply in one go and undo. QuilletPro is the window program (Chinese or English), quillet the command line.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Beyond the linked libraries: a platform plugin to open a window at all.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
# Qt's own dialogs in Chinese.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n")
include(CPack)
