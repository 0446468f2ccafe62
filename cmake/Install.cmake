# `cmake --install`, in components: library (the shared one), development (headers, archive, package
# files), program (tpcli, its manual page and completions), documentation. `--target uninstall` takes
# back what the last installation brought.

include(CMakePackageConfigHelpers)

set(tp_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TrafficPolicy")
install(
   TARGETS TrafficPolicy
   EXPORT TrafficPolicyTargets
   ARCHIVE COMPONENT development
   LIBRARY COMPONENT library NAMELINK_COMPONENT development)

foreach(header IN LISTS TP_PUBLIC_HEADERS)
   cmake_path(GET header PARENT_PATH folder)
   install(FILES "TrafficPolicy/${header}" COMPONENT development
           DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/TrafficPolicy/${folder}")
endforeach()

# find_package(TrafficPolicy).
install(EXPORT TrafficPolicyTargets NAMESPACE TrafficPolicy:: DESTINATION "${tp_package_dir}"
        COMPONENT development)
configure_package_config_file(
   cmake/TrafficPolicyConfig.cmake.in TrafficPolicyConfig.cmake
   INSTALL_DESTINATION "${tp_package_dir}" PATH_VARS CMAKE_INSTALL_BINDIR)
write_basic_package_version_file(TrafficPolicyConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TrafficPolicyConfig.cmake"
              "${PROJECT_BINARY_DIR}/TrafficPolicyConfigVersion.cmake"
        DESTINATION "${tp_package_dir}" COMPONENT development)

# pkg-config traffic-policy. The prefix is where the file is found, as with find_package.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}"
           OUTPUT_VARIABLE tp_includedir)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}"
           OUTPUT_VARIABLE tp_libdir)
file(RELATIVE_PATH tp_prefix_from_pc "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
     "${CMAKE_INSTALL_PREFIX}")
if(NOT BUILD_SHARED_LIBS)
   set(tp_static_cflags " -DTRAFFIC_POLICY_STATIC")
   set(tp_static_libs " -Wl,--undefined=trafficPolicyTypes")
endif()
configure_file(cmake/traffic-policy.pc.in traffic-policy.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/traffic-policy.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

if(TP_CLI)
   install(TARGETS tpcli COMPONENT program)
   install(FILES "${PROJECT_BINARY_DIR}/completion.bash" COMPONENT program
           DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME tpcli)
   install(FILES "${PROJECT_BINARY_DIR}/completion.zsh" COMPONENT program
           DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" RENAME _tpcli)
   # The page names places, which are known when it is installed.
   install(CODE "set(docs \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DOCDIR}\")
                 set(version \"${PROJECT_VERSION}\")
                 configure_file(\"${PROJECT_SOURCE_DIR}/docs/tpcli.1\" \"${PROJECT_BINARY_DIR}/tpcli.1\"
                                @ONLY)"
           COMPONENT program)
   install(FILES "${PROJECT_BINARY_DIR}/tpcli.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
           COMPONENT program)
endif()

install(DIRECTORY docs/ DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation
        PATTERN "*.1" EXCLUDE)
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)
install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)

add_custom_target(
   uninstall COMMAND "${CMAKE_COMMAND}" -P "${PROJECT_SOURCE_DIR}/cmake/Uninstall.cmake"
   WORKING_DIRECTORY "${PROJECT_BINARY_DIR}" VERBATIM)
