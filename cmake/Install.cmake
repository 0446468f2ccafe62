# `cmake --install`: library, headers, package config, program and its man page.

include(CMakePackageConfigHelpers)

install(TARGETS TrafficPolicy EXPORT TrafficPolicyTargets)
install(DIRECTORY TrafficPolicy DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        FILES_MATCHING PATTERN "*.h")

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TrafficPolicy")
install(EXPORT TrafficPolicyTargets NAMESPACE TrafficPolicy:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/TrafficPolicyConfig.cmake.in TrafficPolicyConfig.cmake
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(TrafficPolicyConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/TrafficPolicyConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/TrafficPolicyConfigVersion.cmake"
        DESTINATION "${package_dir}")

if(TP_CLI)
   install(TARGETS tpcli)
   install(FILES "${CMAKE_CURRENT_BINARY_DIR}/completion.bash"
           DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME tpcli)
   install(FILES "${CMAKE_CURRENT_BINARY_DIR}/completion.zsh"
           DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" RENAME _tpcli)
   install(FILES docs/tpcli.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()
