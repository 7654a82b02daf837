# What `cmake --install` puts under the prefix:
#   lib/        the five shared libraries, versioned, each with runpath $ORIGIN
#   lib/cmake/Zorvancow/   the package for find_package(Zorvancow)
#   lib/pkgconfig/zorvancow.pc
#   include/    the headers of zorvancow/ and of the sibling stand-ins, and
#               zorvancow/zorvancow_version.h
# Everything is found relative to the installed files, so the tree works
# wherever it is unpacked.

include(CMakePackageConfigHelpers)

# The version header is written into the build tree (ZORVAN_GENERATED_INCLUDE_DIR)
# and read from there by the project's own targets.
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorvancow_version.h.in
  ${ZORVAN_GENERATED_INCLUDE_DIR}/zorvancow/zorvancow_version.h @ONLY)
target_include_directories(zorvancow PUBLIC $<BUILD_INTERFACE:${ZORVAN_GENERATED_INCLUDE_DIR}>)
install(FILES ${ZORVAN_GENERATED_INCLUDE_DIR}/zorvancow/zorvancow_version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zorvancow)

# zorvan_install_headers(<base> <glob>...)
# Installs every header that a glob below <base> matches, keeping its path
# below <base>, one folder at a time so that a folder without headers is not
# created.
function(zorvan_install_headers base)
  set(headers "")
  foreach(glob IN LISTS ARGN)
    file(GLOB_RECURSE found RELATIVE ${base} CONFIGURE_DEPENDS ${base}/${glob})
    list(APPEND headers ${found})
  endforeach()
  set(folders "")
  foreach(header IN LISTS headers)
    get_filename_component(folder ${header} DIRECTORY)
    if(folder STREQUAL "")
      set(folder ".")
    endif()
    list(APPEND folders ${folder})
    list(APPEND "files_in_${folder}" ${base}/${header})
  endforeach()
  list(REMOVE_DUPLICATES folders)
  foreach(folder IN LISTS folders)
    set(destination ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
    if(folder STREQUAL ".")
      set(destination ${CMAKE_INSTALL_INCLUDEDIR})
    endif()
    install(FILES ${files_in_${folder}} DESTINATION ${destination})
  endforeach()
endfunction()
zorvan_install_headers(${PROJECT_SOURCE_DIR} zorvancow/*.h)
zorvan_install_headers(${PROJECT_SOURCE_DIR}/platform *.h)

# The CMake package: find_package(Zorvancow) gives Zorvancow::zorvancow and
# the four sibling libraries it links. A client of one major version accepts
# any later minor version of it.
set(ZORVAN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Zorvancow)
install(EXPORT ZorvancowTargets NAMESPACE Zorvancow:: DESTINATION ${ZORVAN_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZorvancowConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZorvancowConfig.cmake
  INSTALL_DESTINATION ${ZORVAN_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZorvancowConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZorvancowConfig.cmake
  ${PROJECT_BINARY_DIR}/ZorvancowConfigVersion.cmake
  DESTINATION ${ZORVAN_CMAKE_DIR})

# pkg-config: the prefix is written relative to the .pc file, because
# `cmake --install --prefix` chooses the prefix after configuration.
set(ZORVAN_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH ZORVAN_PC_PREFIX_FROM_PCDIR /root/${ZORVAN_PC_DIR} /root)
string(REGEX REPLACE "/$" "" ZORVAN_PC_PREFIX_FROM_PCDIR "${ZORVAN_PC_PREFIX_FROM_PCDIR}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorvancow.pc.in ${PROJECT_BINARY_DIR}/zorvancow.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zorvancow.pc DESTINATION ${ZORVAN_PC_DIR})
