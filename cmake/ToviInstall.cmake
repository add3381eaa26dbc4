# What `cmake --install` puts where: both libraries, the headers that users need, the CMake package and tovi.pc.
include(CMakePackageConfigHelpers)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/tovi)

foreach(target tovi tovi_shared)
  if(TARGET ${target})
    get_target_property(name ${target} EXPORT_NAME)
    install(TARGETS ${target} EXPORT tovi-${name}
      ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(EXPORT tovi-${name} NAMESPACE tovi:: DESTINATION ${package} FILE tovi-${name}-targets.cmake)
  endif()
endforeach()

# Headers that no other installed one includes and that only the library's own sources are for.
set(notInstalled Constructed.h Bounds.h BerTlv.h CardLine.h FileControl.h FileImage.h Wipe.h)
set_property(GLOBAL PROPERTY TOVI_NOT_INSTALLED ${notInstalled})  # for the API reference
set(excluded)
foreach(header IN LISTS notInstalled)
  list(APPEND excluded PATTERN ${header} EXCLUDE)
endforeach()
install(DIRECTORY asn1 pkcs15 interfaces records card DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tovi
  FILES_MATCHING PATTERN "*.h" ${excluded})
install(FILES Export.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tovi)
install(FILES container/PKCS15Container.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tovi/container)

# Before 1.0 a minor version may break its users.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/tovi-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/tovi-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/tovi-config-version.cmake
  DESTINATION ${package})

# tovi.pc finds the other folders from its own, so the tree may be moved; folders that were given whole stay.
set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefixFromHere ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
cmake_path(APPEND libraryFolder "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND headerFolder "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
get_property(needed GLOBAL PROPERTY TOVI_NEEDED)
list(TRANSFORM needed PREPEND "-l" OUTPUT_VARIABLE neededFlags)
list(JOIN neededFlags " " neededFlags)
configure_file(${PROJECT_SOURCE_DIR}/cmake/tovi.pc.in ${CMAKE_CURRENT_BINARY_DIR}/tovi.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tovi.pc DESTINATION ${pkgconfig})
