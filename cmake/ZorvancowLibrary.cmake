include(GNUInstallDirs)
include(CheckLinkerFlag)
include(CheckCXXCompilerFlag)

# Headers the build writes (the version, the export declarations), read by
# the project's targets from here and installed with the others.
set(ZORVAN_GENERATED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)

# Linker and compiler flags that not every toolchain takes. Checked once.
check_linker_flag(CXX "-Wl,--no-undefined" ZORVAN_LINKER_HAS_NO_UNDEFINED)
check_linker_flag(CXX "-Wl,-Bsymbolic-functions" ZORVAN_LINKER_HAS_BSYMBOLIC_FUNCTIONS)
check_cxx_compiler_flag(-fno-semantic-interposition ZORVAN_CXX_HAS_NO_SEMANTIC_INTERPOSITION)

# clang links its sanitizer and fuzzer runtimes into the executable only, and
# the library finds them there at load time: a sanitized clang library has
# undefined symbols by design.
set(ZORVAN_NO_UNDEFINED ${ZORVAN_LINKER_HAS_NO_UNDEFINED})
if((ZORVANCOW_SANITIZE OR ZORVANCOW_TSAN) AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  set(ZORVAN_NO_UNDEFINED OFF)
endif()

# zorvan_add_library(<name> SOURCES ... [LINKS ...])
# One shared library of this tree: hidden symbols by default, its include
# directory at the repository root or under platform/, and the alias
# Zorvancow::<name> for clients.
#
# The library carries the project version (libX.so.MAJOR -> libX.so.M.m.p)
# and, once installed, the runpath $ORIGIN, so that the libraries find each
# other wherever the installed tree is unpacked.
function(zorvan_add_library name)
  cmake_parse_arguments(ARG "" "INCLUDE_DIR" "SOURCES;LINKS" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(Zorvancow::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${ARG_INCLUDE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  # The headers use C++17 (if constexpr, inline variables): clients need it
  # too, or a later standard.
  target_compile_features(${name} PUBLIC cxx_std_17)
  if(ARG_LINKS)
    target_link_libraries(${name} PUBLIC ${ARG_LINKS})
  endif()
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$ORIGIN")
  # Calls inside the library bind to the library's own definitions.
  if(ZORVAN_LINKER_HAS_BSYMBOLIC_FUNCTIONS)
    target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
  endif()
  if(ZORVAN_CXX_HAS_NO_SEMANTIC_INTERPOSITION)
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
  endif()
  # Every symbol a library uses must come from itself or from what it links.
  if(ZORVAN_NO_UNDEFINED)
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  install(TARGETS ${name} EXPORT ZorvancowTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()
