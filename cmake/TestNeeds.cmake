# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT

# Finds what only the tests need; GATE_TESTS_LACK then names what is not there.
find_package(Qt5 5.15 QUIET COMPONENTS Test)
find_package(X11 QUIET COMPONENTS Xfixes)
pkg_check_modules(atspi QUIET IMPORTED_TARGET atspi-2 gobject-2.0)
find_program(APPARMOR_PARSER apparmor_parser)

set(GATE_TESTS_LACK)
foreach(need Qt5Test_FOUND X11_Xfixes_FOUND atspi_FOUND APPARMOR_PARSER)
  if(NOT ${need})
    list(APPEND GATE_TESTS_LACK ${need})
  endif()
endforeach()
