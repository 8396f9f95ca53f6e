# The Debian package, made by CPack from the install rules (scripts/package.sh drives it).
# Runtime dependencies are computed by dpkg-shlibdeps from the libraries the binary links.
execute_process(COMMAND dpkg --print-architecture
                OUTPUT_VARIABLE TROTLET_DEB_ARCH OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT TROTLET_DEB_ARCH)
  set(TROTLET_DEB_ARCH amd64)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trotlet)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${TROTLET_MAINTAINER}")
set(CPACK_PACKAGE_VENDOR "The Trotlet developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME "trotlet_${PROJECT_VERSION}_${TROTLET_DEB_ARCH}.deb")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${TROTLET_DEB_ARCH})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://trotlet.github.io/")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
# CPack indents the lines after the first itself.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "tray system monitor with a running mascot
Trotlet lives in the system tray as a small mascot whose gait follows the
computer's load: it naps when the machine is idle and sprints when every core
is busy. A short reading can sit beside it, and its panel shows the processor,
memory, disks, network, battery, sensors, processes and the weather.")
include(CPack)
