# The installed tree: headers as they lie, the library, the command line, and what CMake and pkg-config need to find them.
# zlib and the compiled parts of Boost are linked privately and show in no header; of Boost users need the headers.
include(CMakePackageConfigHelpers)

set(vrelio_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VrelIo)
set(vrelio_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY include/vrelio DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(TARGETS VrelIo EXPORT VrelIoTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

if(TARGET vrel)
  # The tool finds the library beside itself, wherever the tree is moved to.
  file(RELATIVE_PATH library_from_tool ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(vrel PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_tool}")
  install(TARGETS vrel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT VrelIoTargets NAMESPACE VrelIo:: DESTINATION ${vrelio_cmake_dir})
configure_package_config_file(cmake/VrelIoConfig.cmake.in ${PROJECT_BINARY_DIR}/VrelIoConfig.cmake
                              INSTALL_DESTINATION ${vrelio_cmake_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VrelIoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VrelIoConfig.cmake ${PROJECT_BINARY_DIR}/VrelIoConfigVersion.cmake
        DESTINATION ${vrelio_cmake_dir})

file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_PREFIX}/${vrelio_pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/vrelio.pc.in ${PROJECT_BINARY_DIR}/vrelio.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vrelio.pc DESTINATION ${vrelio_pkgconfig_dir})
