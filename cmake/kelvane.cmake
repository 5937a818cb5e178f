# What every part of the house is built with: one standard, one set of warnings, one precompiled header.

option(KELVANE_TESTS "Build the tests" ON)
option(KELVANE_BENCH "Build the benchmarks" OFF)
option(KELVANE_FUZZ "Build the fuzz targets (clang only)" OFF)
# The name of the program on the bus, of its desktop file and of its policy.
set(KELVANE_APPLICATION_ID "example.kelvane.Kelvane" CACHE STRING "A reversed domain name of the makers")
set(KELVANE_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13
   AND NOT KELVANE_SANITIZE MATCHES "address")
  # When it optimises, GCC 12 raises false alarms inside the standard library's own strings. The dev preset keeps these
  # warnings, and its address sanitizer looks for the real cases.
  foreach(alarm restrict array-bounds stringop-overflow stringop-overread)
    add_compile_options(-Wno-${alarm})
  endforeach()
endif()
if(CMAKE_UNITY_BUILD)
  # What is compiled together would shadow the names of other files.
  add_compile_options(-Wno-shadow)
endif()
if(KELVANE_SANITIZE)
  add_compile_options(-fsanitize=${KELVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KELVANE_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND KELVANE_SANITIZE MATCHES "undefined")
    # At every access through a pointer, which makes a third of the work of compiling. The fuzz targets keep them, and
    # what goes wrong at such an access mostly reaches the address sanitizer.
    add_compile_options(-fno-sanitize=null,alignment,vptr,object-size)
  endif()
endif()
if(KELVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  # Wide calls only; from Windows 10 on. Nothing but the program itself has to be there where it runs.
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00)
  add_link_options(-static)
endif()

find_package(Threads REQUIRED)

find_program(KELVANE_CCACHE ccache)
if(KELVANE_CCACHE)
  # A precompiled header is only cached when these differences are declared harmless.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${KELVANE_CCACHE})
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()

# kelvane_library(name DEPENDS ...): the sources of the current folder as one static library, with src/ as the root of
# its includes.
function(kelvane_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;PRIVATE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE})
  kelvane_precompile(${name})
  kelvane_unite(${name} 8)
endfunction()

# The standard headers that nearly every file includes; compiled once.
function(kelvane_precompile name)
  if(name STREQUAL kelvane_base)
    target_precompile_headers(${name} PRIVATE <algorithm> <atomic> <chrono> <cstdint> <filesystem> <functional> <memory>
                              <optional> <span> <string> <string_view> <unordered_map> <variant> <vector>)
  else()
    target_precompile_headers(${name} REUSE_FROM kelvane_base)
  endif()
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()

# Where CMAKE_UNITY_BUILD is on, a tree is meant to be built once, and of each folder's files those of one part are
# compiled together. Which part a file is in depends on its name alone: a new file brings no two others together whose
# private names clash.
function(kelvane_unite name parts)
  get_target_property(sources ${name} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  foreach(source IN LISTS sources)
    cmake_path(GET source PARENT_PATH folder)
    cmake_path(GET folder FILENAME folder)
    cmake_path(GET source STEM stem)
    string(MD5 hash ${stem})
    string(SUBSTRING ${hash} 0 1 digit)
    math(EXPR part "0x${digit} * ${parts} / 16")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${folder}_${part})
  endforeach()
  set_target_properties(${name} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()
