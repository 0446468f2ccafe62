# The library's targets.

include(PublicHeaders)

file(GLOB_RECURSE tp_library_files CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/TrafficPolicy/*.cpp"
     "${PROJECT_SOURCE_DIR}/TrafficPolicy/*.h")

# tp_add_library(TARGET STATIC|SHARED): a build of the library. Position-independent in both forms, so
# that a shared object can link either; what is not public is hidden in both.
function(tp_add_library target form)
   add_library(${target} ${form} ${tp_library_files})
   target_compile_features(${target} PUBLIC cxx_std_20)
   target_include_directories(
      ${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                       $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
   # Debug builds check every reservation of the print buffer.
   target_compile_definitions(
      ${target} PUBLIC $<BUILD_INTERFACE:$<$<CONFIG:Debug>:TP_CHECK_RESERVATIONS>>)
   set_target_properties(
      ${target} PROPERTIES OUTPUT_NAME trafficpolicy
                           POSITION_INDEPENDENT_CODE ON
                           CXX_VISIBILITY_PRESET hidden
                           VISIBILITY_INLINES_HIDDEN ON)
   if(form STREQUAL "SHARED")
      set_target_properties(${target} PROPERTIES VERSION "${PROJECT_VERSION}"
                                                 SOVERSION "${TP_SOVERSION}")
      # Calls within the library are direct; nothing but what it uses is linked, and all of that.
      target_compile_options(${target} PRIVATE -fno-semantic-interposition)
      target_link_options(${target} PRIVATE LINKER:--as-needed LINKER:-z,defs)
   else()
      target_compile_definitions(${target} PUBLIC TRAFFIC_POLICY_STATIC)
      # Every class registers itself, in programs that only construct by name, too.
      target_link_options(${target} INTERFACE LINKER:--undefined=trafficPolicyTypes)
   endif()
   tp_own_code(${target})
endfunction()

if(BUILD_SHARED_LIBS)
   tp_add_library(TrafficPolicy SHARED)
else()
   tp_add_library(TrafficPolicy STATIC)
endif()
add_library(TrafficPolicy::TrafficPolicy ALIAS TrafficPolicy)

# Our own program, tests and benchmarks use more than what is public, and start faster without a
# shared library: they link the archive, whatever is installed.
set(tp_internals TrafficPolicy)
if(BUILD_SHARED_LIBS AND (TP_CLI OR TP_BENCH))
   set(tp_internals TrafficPolicyInternals)
   tp_add_library(${tp_internals} STATIC)
   set_target_properties(${tp_internals} PROPERTIES OUTPUT_NAME trafficpolicy-internals)
endif()
