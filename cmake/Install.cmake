# `cmake --install`: library, headers, package config, program and its man page.

include(CMakePackageConfigHelpers)

install(TARGETS TrafficPolicy EXPORT TrafficPolicyTargets)
if(library_headers)
   install(DIRECTORY TrafficPolicy DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
           FILES_MATCHING PATTERN "*.h")
endif()

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TrafficPolicy")
install(EXPORT TrafficPolicyTargets NAMESPACE TrafficPolicy:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/TrafficPolicyConfig.cmake.in TrafficPolicyConfig.cmake
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(TrafficPolicyConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/TrafficPolicyConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/TrafficPolicyConfigVersion.cmake"
        DESTINATION "${package_dir}")

if(TARGET tpcli)
   install(TARGETS tpcli)
endif()
file(GLOB man_pages CONFIGURE_DEPENDS docs/*.1)
if(man_pages)
   install(FILES ${man_pages} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()
