# `make package`: a Debian package made with CPack from the install rules in
# packaging/CMakeLists.txt. Included from the top-level CMakeLists.txt,
# because CPack reads its settings from that scope.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillpost-express)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Quillpost Express developers")
set(CPACK_PACKAGE_CONTACT "${QUILLPOST_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mail client for classroom training, without a mail server")
set(CPACK_PACKAGE_DESCRIPTION
  "Quillpost Express has every window of a full desktop mail client, all in
Simplified Chinese, but no network code: sending and receiving move mail
between the local accounts of one machine. Trainees practise setting up
accounts and writing, sending, receiving, reading, replying to, forwarding
and deleting mail. Each user gets a mailbox of their own; a trainer can hand
out a prepared exercise folder with --data-dir.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION mail)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries come from dpkg-shlibdeps; the font is not linked but without
# it every Chinese text shows as empty boxes.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-wqy-microhei")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# No maintainer scripts: the menu, icon and manual caches are refreshed by
# the dpkg triggers of the packages that own them.
include(CPack)
