# Warnings and sanitizers for the targets this project builds: its libraries,
# tests, examples and benchmarks. They never reach a client: the flags sit on
# an interface target that is linked privately and never installed.

add_library(zorvan_project_options INTERFACE)
target_compile_options(zorvan_project_options INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic>)
# Checked mode is this tree's choice; a client of the installed library
# makes its own for the inline code (zorvancow/core/cow_Check.h).
target_compile_definitions(zorvan_project_options INTERFACE
  ZORVANCOW_CHECKED=$<BOOL:${ZORVANCOW_CHECKED}>)
if(ZORVANCOW_SANITIZE)
  target_compile_options(zorvan_project_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zorvan_project_options INTERFACE -fsanitize=address,undefined)
endif()
if(ZORVANCOW_TSAN)
  target_compile_options(zorvan_project_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(zorvan_project_options INTERFACE -fsanitize=thread)
endif()

# zorvan_apply_project_options(<dir>)
# Gives zorvan_project_options to every target built under <dir>, so that a
# target added later anywhere in the tree gets the same warnings without
# having to ask for them.
function(zorvan_apply_project_options dir)
  get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type MATCHES "^(EXECUTABLE|SHARED_LIBRARY|STATIC_LIBRARY|MODULE_LIBRARY|OBJECT_LIBRARY)$")
      # The property, not target_link_libraries(): a target may use either
      # signature of that command, and the two cannot be mixed.
      set_property(TARGET ${target} APPEND PROPERTY LINK_LIBRARIES zorvan_project_options)
    endif()
  endforeach()
  get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  foreach(subdir IN LISTS subdirs)
    zorvan_apply_project_options(${subdir})
  endforeach()
endfunction()
