include(GNUInstallDirs)

# zorvan_add_library(<name> SOURCES ... [LINKS ...])
# One shared library of this tree: hidden symbols by default, its include
# directory at the repository root or under platform/, and the alias
# Zorvancow::<name> for clients.
function(zorvan_add_library name)
  cmake_parse_arguments(ARG "" "INCLUDE_DIR" "SOURCES;LINKS" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(Zorvancow::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${ARG_INCLUDE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  if(ARG_LINKS)
    target_link_libraries(${name} PUBLIC ${ARG_LINKS})
  endif()
  # Calls inside the library bind to the library's own definitions.
  target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
  # clang links its sanitizer and fuzzer runtimes into the executable only,
  # and the library finds them there at load time.
  if(NOT (ZORVANCOW_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  target_compile_options(${name} PRIVATE -fno-semantic-interposition)
  install(TARGETS ${name} EXPORT ZorvancowTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()
