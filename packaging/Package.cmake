# The Debian package, made by the target "package".
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelk)
set(CPACK_PACKAGE_VENDOR zelk)
set(CPACK_PACKAGE_CONTACT "zelk maintainers <zelk@example.org>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
set(CPACK_VERBATIM_VARIABLES ON)
# The files that name their own place are written at the installation, so that has to know the real prefix.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${ZELK_WEBSITE}")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "turns playlists into a DJ-ready folder of music
zelk turns the playlists of your streaming services into a folder of music
that is ready for DJing. You pick playlists, see which of their tracks you
already have, and press Sync; each track is found among your files,
converted where it must be, tagged, checked and put into the folder that
your DJ application watches. A doubtful match is not taken: it waits for
you in the review.

The package has the application with its window, and its engine as a
command-line program. Playlists are read from files that were exported;
nothing is searched on any network.")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What the linker knows of is found by its symbols; the rest is loaded by name at run time.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
    libqt6sql6-sqlite
    qml6-module-qtqml
    qml6-module-qtqml-models
    qml6-module-qtqml-workerscript
    qml6-module-qtquick
    qml6-module-qtquick-window
    qml6-module-qtquick-templates
    qml6-module-qtquick-controls
    qml6-module-qtquick-layouts
    qml6-module-qtquick-dialogs
    qml6-module-qt-labs-folderlistmodel)
# Without these something is missing that most people want: sound files that must be converted, covers in WebP and TIFF,
# the typeface, a window on Wayland, the browser, the icon's folders.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS
    ffmpeg qt6-image-formats-plugins fonts-inter qt6-wayland xdg-utils hicolor-icon-theme)
# "Install" in the settings asks an administrator with the first; the package has put `zelk` on the path already. The
# second has the words of Qt itself for those who ask for another language.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "pkexec, qt6-translations-l10n")

include(CPack)
