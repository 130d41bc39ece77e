# `cmake --install` lays down the two libraries with their headers and a package file, so that a host writes
#   find_package(Lumicor REQUIRED)
#   target_link_libraries(app PRIVATE Lumicor::lumicor)
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Lumicor")
install(TARGETS platform lumicor EXPORT LumicorTargets ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
foreach(tree platform lumicor)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/${tree}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/Lumicor"
    FILES_MATCHING PATTERN "*.h" PATTERN "engine/qt" EXCLUDE PATTERN "engine/curl" EXCLUDE
      PATTERN "engine/ffmpeg" EXCLUDE)
endforeach()
install(EXPORT LumicorTargets NAMESPACE Lumicor:: DESTINATION "${package_folder}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/LumicorConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/LumicorConfig.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/LumicorConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/LumicorConfig.cmake" "${PROJECT_BINARY_DIR}/LumicorConfigVersion.cmake"
  DESTINATION "${package_folder}")
