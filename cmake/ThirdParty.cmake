# Third-party code. Libraries are looked up by architecture, since the packages' own CMake
# configs know only the 64-bit library and their -dev packages cannot be installed for two
# architectures at once; the headers are the same for both.

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
   set(tp_library_dirs /usr/lib/i386-linux-gnu /usr/lib32)
else()
   set(tp_library_dirs "")
endif()

# Defines the imported target tp::<name> from a header and a shared library.
function(tp_import name header)
   if(TARGET tp::${name})
      return()
   endif()
   find_path(TP_${name}_INCLUDE_DIR ${header} REQUIRED)
   if(tp_library_dirs)
      find_library(TP_${name}_LIBRARY NAMES ${ARGN} PATHS ${tp_library_dirs} NO_DEFAULT_PATH
                                      REQUIRED)
   else()
      find_library(TP_${name}_LIBRARY NAMES ${ARGN} REQUIRED)
   endif()
   mark_as_advanced(TP_${name}_INCLUDE_DIR TP_${name}_LIBRARY)
   # An imported target's include directories are system ones for the compiler.
   add_library(tp::${name} UNKNOWN IMPORTED GLOBAL)
   set_target_properties(
      tp::${name} PROPERTIES IMPORTED_LOCATION "${TP_${name}_LIBRARY}"
                             INTERFACE_INCLUDE_DIRECTORIES "${TP_${name}_INCLUDE_DIR}")
endfunction()

function(tp_find_hiredis)
   tp_import(hiredis hiredis/hiredis.h hiredis libhiredis.so.0.14)
endfunction()

# A 32-bit program does without line editing where there is no library of its architecture.
function(tp_find_libedit)
   if(tp_library_dirs)
      find_library(TP_libedit_LIBRARY NAMES libedit.so.2 PATHS ${tp_library_dirs} NO_DEFAULT_PATH)
      if(NOT TP_libedit_LIBRARY)
         message(STATUS "No libedit for 32 bit: tpcli is built without line editing")
         return()
      endif()
   endif()
   tp_import(libedit histedit.h edit libedit.so.2)
endfunction()

function(tp_find_benchmark)
   tp_import(benchmark benchmark/benchmark.h benchmark libbenchmark.so.1debian libbenchmark.so.1)
   find_package(Threads REQUIRED)
   target_link_libraries(tp::benchmark INTERFACE Threads::Threads)
endfunction()

function(tp_find_rapidjson)
   if(TARGET tp::rapidjson)
      return()
   endif()
   find_path(TP_rapidjson_INCLUDE_DIR rapidjson/rapidjson.h REQUIRED)
   mark_as_advanced(TP_rapidjson_INCLUDE_DIR)
   add_library(tp::rapidjson INTERFACE IMPORTED GLOBAL)
   set_target_properties(tp::rapidjson PROPERTIES INTERFACE_INCLUDE_DIRECTORIES
                                                  "${TP_rapidjson_INCLUDE_DIR}")
endfunction()

# GoogleTest is compiled with every build: that is how it gets the build's architecture and
# sanitizers.
set(TP_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "The GoogleTest sources")

macro(tp_add_googletest)
   if(NOT EXISTS "${TP_GOOGLETEST_DIR}/CMakeLists.txt")
      message(FATAL_ERROR "No GoogleTest sources in ${TP_GOOGLETEST_DIR}: install the package "
                          "googletest, or configure with -DTP_TESTS=OFF")
   endif()
   set(INSTALL_GTEST OFF CACHE INTERNAL "")
   add_subdirectory("${TP_GOOGLETEST_DIR}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL
                    SYSTEM)
   include(GoogleTest)
endmacro()
