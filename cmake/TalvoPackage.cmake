# `cpack` in the build folder makes a Debian package of what `cmake --install` lays out.
#
# The libraries that the program is linked to are computed (dpkg-shlibdeps). What it loads by name
# while running nothing can compute: the QML modules stand in packaging/linux/run-packages.txt.
if(APPLE)
    return() # macos/README.md
endif()

set(TALVO_PACKAGE_MAINTAINER "The Talvo authors <authors@talvo.invalid>" CACHE STRING
    "Name and address in the Debian package")

file(STRINGS "${PROJECT_SOURCE_DIR}/packaging/linux/run-packages.txt" qml_modules REGEX "^qml6-")
list(TRANSFORM qml_modules REPLACE "[ \t]*#.*$" "")
list(TRANSFORM qml_modules STRIP)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/packaging/linux/run-packages.txt")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME talvo)
set(CPACK_PACKAGE_CONTACT "${TALVO_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/linux/deb/finish.cmake")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chat assistant for people who speak Turkish")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Talvo shows conversations with a large language model of the Groq service
in one window, whose interface is Turkish. An API key of the service is
needed; it is kept in the keyring of the desktop.
.
Replies are laid out from their Markdown without loading anything, each
conversation gets a title, and a short memory about the user carries over
from one conversation to the next.")

set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Without the trust store no connection to the service can be verified, so none is made.
list(JOIN qml_modules ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", ca-certificates")
# Compiled QML and the accessible text fields are built against private headers of exactly this Qt.
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS
    ", qt6-base-abi (= ${Qt6_VERSION}), qt6-declarative-abi (= ${Qt6_VERSION})")
# A place for the key, the bus that leads there, the browser for links, a window on Wayland without
# its X11 bridge, emoji in replies.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "gnome-keyring | libkf5wallet-bin | keepassxc"
    "default-dbus-session-bus | dbus-session-bus"
    xdg-utils
    qt6-wayland
    fonts-noto-color-emoji)
list(JOIN CPACK_DEBIAN_PACKAGE_RECOMMENDS ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)

include(CPack)
