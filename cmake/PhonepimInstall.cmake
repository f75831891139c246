# Installation: headers, the library, the CMake package and phonepim.pc.
include(CMakePackageConfigHelpers)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/phonepim
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS phonepim EXPORT phonepimTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT phonepimTargets NAMESPACE phonepim::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/phonepim)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/phonepimConfig.cmake.in
  ${PROJECT_BINARY_DIR}/phonepimConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/phonepim)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/phonepimConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/phonepimConfig.cmake
              ${PROJECT_BINARY_DIR}/phonepimConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/phonepim)

# A static library needs its dependencies on every link line, so they are
# public requirements then; a shared one carries them itself.
if(BUILD_SHARED_LIBS)
  set(PHONEPIM_PC_REQUIRES "")
  set(PHONEPIM_PC_REQUIRES_PRIVATE "icu-i18n icu-uc libplist-2.0 uuid sqlite3")
  set(PHONEPIM_PC_LIBS_PRIVATE "")
else()
  set(PHONEPIM_PC_REQUIRES "icu-i18n icu-uc libplist-2.0 uuid sqlite3")
  set(PHONEPIM_PC_REQUIRES_PRIVATE "")
  set(PHONEPIM_PC_LIBS_PRIVATE "-lstdc++ -lm")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/phonepim.pc.in
               ${PROJECT_BINARY_DIR}/phonepim.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/phonepim.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
