# One set of options for every target of the tree.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
include(CheckPIESupported)
check_pie_supported()

# Everything goes beside the executable, since the client library is looked for there.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

set(CFHOST_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
set(CFHOST_VECTORS "" CACHE STRING
    "The widest vectors to use, in bytes: 32, 16, or 0 for plain code; by default all that a processor has")
option(CFHOST_FUZZ "Build the fuzz targets of tests/fuzz (needs clang)" OFF)
option(CFHOST_COVERAGE "Count what the tests execute (needs clang)" OFF)
option(CFHOST_HARDEN "Build with the hardening flags of a release" OFF)

# For C++ only: the resources of a Windows program are compiled too.
function(add_cxx_options)
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:${ARGN}>")
endfunction()

add_cxx_options(
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wundef -Wcast-qual
  -Woverloaded-virtual
  # Fused multiply-add would change the single-precision results of the parser.
  -ffp-contract=off)

if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Sources that are compiled as one look like headers to the compiler.
  add_cxx_options(-Wno-subobject-linkage)
endif()

if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Checks the locks that platform/checked_mutex.h describes.
  add_cxx_options(-Wthread-safety)
endif()

if(NOT CFHOST_VECTORS STREQUAL "")
  add_compile_definitions(CFHOST_VECTORS=${CFHOST_VECTORS})
endif()

# Includes are relative to the top of the tree.
add_library(source_root INTERFACE)
target_include_directories(source_root INTERFACE ${PROJECT_SOURCE_DIR})

if(CFHOST_SANITIZE)
  add_cxx_options(-fsanitize=${CFHOST_SANITIZE} -fno-sanitize-recover=all
                  -fno-omit-frame-pointer)
  # The check needs type information, which the tables of other compilers don't have in its place.
  add_cxx_options(-fno-sanitize=vptr)
  add_link_options(-fsanitize=${CFHOST_SANITIZE})
endif()

if(CFHOST_FUZZ AND NOT CFHOST_COVERAGE)
  # Counts the edges that an input takes. Only the fuzz targets link the code that reads the
  # counters.
  add_cxx_options(-fsanitize=fuzzer-no-link)
endif()

if(CFHOST_COVERAGE)
  # The counters can be moved into a file while the program runs: the host may end without the exit
  # actions that would write them.
  add_cxx_options(-fprofile-instr-generate -fcoverage-mapping
                  "SHELL:-mllvm -runtime-counter-relocation")
  add_link_options(-fprofile-instr-generate)
endif()

if(CFHOST_HARDEN)
  add_cxx_options(-fstack-protector-strong -D_FORTIFY_SOURCE=2)
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
  elseif(WIN32)
    add_cxx_options(-fcf-protection)
    add_link_options(-fstack-protector-strong -Wl,--nxcompat,--dynamicbase,--high-entropy-va)
  endif()
endif()

if(WIN32)
  # A program is a single file that needs no DLL of the tool chain beside it.
  add_link_options(-static)
  # Otherwise the time of the build would make each build different.
  add_link_options(-Wl,--no-insert-timestamp)
elseif(NOT CFHOST_SANITIZE)
  # Dynamic libraries of the tool chain would double the start-up time.
  add_link_options(-static-libstdc++ -static-libgcc)
endif()
