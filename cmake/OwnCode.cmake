# Settings for our own code only; third-party code keeps its own.

cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY "${CMAKE_BINARY_DIR}"
           OUTPUT_VARIABLE tp_source_from_build)

function(tp_own_code target)
   # Files of more than two gigabytes on 32-bit machines, too.
   target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
   target_compile_options(
      ${target}
      PRIVATE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wshadow
              # GCC 12 sees overlaps in operator+ of std::string at -O3 that are none.
              $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
              $<$<BOOL:${TP_WERROR}>:-Werror>
              # File names in assertion messages: relative to the sources, whatever the places of these
              # and of the build; a compiler cache makes them relative to the build first.
              "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/="
              "-ffile-prefix-map=${tp_source_from_build}/=")
endfunction()
