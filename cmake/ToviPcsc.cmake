# PC/SC readers through libpcsclite, where pkg-config finds it. Sets PCSCLITE_FOUND, PCSCLITE_INCLUDE_DIRS, and
# TOVI_PCSC_SERVICE, the source in tovi/card that reaches the service or says that it cannot.
set(TOVI_PCSC AUTO CACHE STRING "PC/SC readers through libpcsclite: AUTO (where it is found), ON or OFF")
set_property(CACHE TOVI_PCSC PROPERTY STRINGS AUTO ON OFF)

set(PCSCLITE_FOUND FALSE)
if(TOVI_PCSC STREQUAL AUTO OR TOVI_PCSC)
  find_package(PkgConfig QUIET)
  if(PkgConfig_FOUND)
    pkg_check_modules(PCSCLITE QUIET libpcsclite)
  endif()
  if(NOT PCSCLITE_FOUND AND NOT TOVI_PCSC STREQUAL AUTO)
    message(FATAL_ERROR "TOVI_PCSC is ${TOVI_PCSC}, but pkg-config finds no libpcsclite (Debian: pkg-config libpcsclite-dev)")
  endif()
endif()

if(PCSCLITE_FOUND)
  set(TOVI_PCSC_SERVICE PcscLiteService.cpp)
  message(STATUS "PC/SC: libpcsclite ${PCSCLITE_VERSION}")
else()
  set(TOVI_PCSC_SERVICE PcscNoService.cpp)
  message(STATUS "PC/SC: not built (TOVI_PCSC is ${TOVI_PCSC})")
endif()
