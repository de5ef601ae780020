# What `cmake --install` puts where, and the Debian package that `cpack` makes of it. The programs look for their plug-ins
# beside themselves, so they share a directory of their own, and the directory of commands has links to them.
include(GNUInstallDirs)
set(home ${CMAKE_INSTALL_LIBDIR}/tolvane)
set(share ${CMAKE_INSTALL_DATADIR}/tolvane)
set(staged ${PROJECT_BINARY_DIR}/packaging)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
file(MAKE_DIRECTORY ${staged})

# install_link(TARGET NAME DIRECTORY): a link, relative so that it holds under every prefix.
function(install_link target name directory)
    file(RELATIVE_PATH target /${directory} /${target})
    file(MAKE_DIRECTORY ${staged}/links/${directory})
    file(CREATE_LINK ${target} ${staged}/links/${directory}/${name} SYMBOLIC)
    install(FILES ${staged}/links/${directory}/${name} DESTINATION ${directory})
endfunction()

# stage_compressed(FILE NAME): FILE with its @variables@ replaced, as NAME.gz. Without a time stamp, so that equal
# sources give an equal package.
function(stage_compressed file name)
    configure_file(${file} ${staged}/${name} @ONLY)
    execute_process(COMMAND gzip -9 -n -c ${staged}/${name} OUTPUT_FILE ${staged}/${name}.gz COMMAND_ERROR_IS_FATAL ANY)
endfunction()

install(TARGETS tolvane tolvane-measure RUNTIME DESTINATION ${home})
install(TARGETS avss FFMpegSource QTSource rawsource LIBRARY DESTINATION ${home}/avs_plugins)
install(TARGETS roi_psnr LIBRARY DESTINATION ${home}/plugins)
install_link(${home}/tolvane tolvane ${CMAKE_INSTALL_BINDIR})
install_link(${home}/tolvane-measure tolvane-measure ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY docs/help/ DESTINATION ${share}/help)
install_link(${share}/help help ${home})

# For writers of plug-ins.
install(FILES metric/sdk/tolvane/plugin.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tolvane)
install(FILES plugins/roi_psnr.cpp DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# What the desktop and the shell know the programs by.
install(FILES ${packaging}/tolvane.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES platform/qt/icons/tolvane.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(DIRECTORY ${PROJECT_BINARY_DIR}/icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
configure_file(${packaging}/invalid.tolvane.tolvane.metainfo.xml.in ${staged}/invalid.tolvane.tolvane.metainfo.xml @ONLY)
install(FILES ${staged}/invalid.tolvane.tolvane.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${packaging}/tolvane-measure.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME tolvane-measure)
stage_compressed(${packaging}/tolvane.1.in tolvane.1)
stage_compressed(${packaging}/tolvane-measure.1.in tolvane-measure.1)
install(FILES ${staged}/tolvane.1.gz ${staged}/tolvane-measure.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

stage_compressed(CHANGELOG.md changelog)
stage_compressed(${packaging}/changelog.Debian.in changelog.Debian)
install(FILES ${packaging}/copyright ${staged}/changelog.gz ${staged}/changelog.Debian.gz
    docs/formats.md docs/metrics.md docs/pictures.md docs/plugins.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${packaging}/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME tolvane)
install(DIRECTORY docs/pictures DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN windows EXCLUDE)

# All that the package needs to be built.
add_custom_target(packaged DEPENDS tolvane tolvane-measure source_plugins roi_psnr program_icons)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Tolvane developers")
set(CPACK_PACKAGE_CONTACT "The Tolvane developers <${TOLVANE_FEEDBACK_ADDRESS}>")
set(CPACK_PACKAGE_HOMEPAGE_URL ${TOLVANE_PRODUCT_PAGE})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "measure objective video quality, frame by frame")
file(READ ${packaging}/description CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
# The libraries come from dpkg-shlibdeps, but for those that are loaded when first needed. Pages open by xdg-open,
# addresses by https need authorities.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
foreach(library avcodec avformat avutil swscale)
    string(REGEX MATCH "^[0-9]+" major ${LIBAV_lib${library}_VERSION})
    list(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS lib${library}${major})
endforeach()
list(JOIN CPACK_DEBIAN_PACKAGE_DEPENDS ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, ca-certificates")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-wayland")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Whatever the builder's umask.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
include(CPack)
