# The installed tree: headers as they lie, the library, the command line, what CMake and pkg-config need to find them, and the pages.
# zlib and the compiled parts of Boost are linked privately and show in no header; of Boost users need the headers.
# Components: runtime is what programs need, development what building them needs, tools the command line.
include(CMakePackageConfigHelpers)

set(vrelio_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VrelIo)
set(vrelio_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY include/vrelio DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN "*.h")
install(TARGETS VrelIo EXPORT VrelIoTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)

if(TARGET vrel)
  # The tool finds the library beside itself, wherever the tree is moved to.
  file(RELATIVE_PATH library_from_tool ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(vrel PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_tool}")
  install(TARGETS vrel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)

  install(DIRECTORY ${VRELIO_PAGES}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT tools)
  install(FILES ${VRELIO_PAGES}/bash/vrel DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  install(FILES ${VRELIO_PAGES}/zsh/_vrel DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
  install(FILES ${VRELIO_PAGES}/fish/vrel.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
endif()

install(EXPORT VrelIoTargets NAMESPACE VrelIo:: DESTINATION ${vrelio_cmake_dir} COMPONENT development)
configure_package_config_file(cmake/VrelIoConfig.cmake.in ${PROJECT_BINARY_DIR}/VrelIoConfig.cmake
                              INSTALL_DESTINATION ${vrelio_cmake_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VrelIoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VrelIoConfig.cmake ${PROJECT_BINARY_DIR}/VrelIoConfigVersion.cmake
        DESTINATION ${vrelio_cmake_dir} COMPONENT development)

file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_PREFIX}/${vrelio_pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/vrelio.pc.in ${PROJECT_BINARY_DIR}/vrelio.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vrelio.pc DESTINATION ${vrelio_pkgconfig_dir} COMPONENT development)

# The pages stay as far from one another as they are here, so that their links lead somewhere.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development OPTIONAL)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
        FILES_MATCHING PATTERN "*.md" PATTERN "*.cpp" PATTERN "*.h" PATTERN docs/man EXCLUDE)
