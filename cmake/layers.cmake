# Reads layers.txt and makes one object library per row.
#
#   halvern_stratum(<name> SOURCES <file>...)   the object library halvern_<name>
#   halvern_link_strata(<target> <name>...)     links the objects of these rows and of all below
#
# A program gets the objects of exactly the rows that it may use, so that a call upward does not
# link.

set(layers_file ${PROJECT_SOURCE_DIR}/layers.txt)
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${layers_file})
set(HALVERN_STRATA)
file(STRINGS ${layers_file} rows REGEX "^[a-z]")
foreach(row IN LISTS rows)
  string(REGEX REPLACE " *\\| *" ";" cells "${row}")
  list(GET cells 0 name)
  list(GET cells 2 below)
  list(GET cells 3 outside)
  string(STRIP "${name}" name)
  string(REGEX MATCHALL "[a-z0-9]+" below "${below}")
  string(REGEX MATCHALL "[a-z0-9]+" outside "${outside}")
  list(APPEND HALVERN_STRATA ${name})
  set(HALVERN_OUTSIDE_OF_${name} ${outside})
  # Rows stand lowest first, so that what the rows below may use is known already.
  set(closure)
  foreach(lower IN LISTS below)
    if(NOT lower IN_LIST HALVERN_STRATA)
      message(FATAL_ERROR "layers.txt: ${name} may include ${lower}, which does not stand above it")
    endif()
    list(APPEND closure ${HALVERN_CLOSURE_${lower}})
  endforeach()
  list(REMOVE_DUPLICATES closure)
  set(HALVERN_CLOSURE_${name} ${closure} ${name})
endforeach()

function(halvern_stratum name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES")
  if(NOT name IN_LIST HALVERN_STRATA)
    message(FATAL_ERROR "${name} is not a row of layers.txt")
  endif()
  set(target halvern_${name})
  add_library(${target} OBJECT ${arg_SOURCES})
  # The fuzz targets pull in the readers that they need.
  set_target_properties(${target} PROPERTIES EXCLUDE_FROM_ALL ${HALVERN_FUZZ})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PRIVATE ${HALVERN_INCLUDE_FOLDERS})
  target_link_libraries(${target} PRIVATE halvern_library_flags)
  foreach(package IN LISTS HALVERN_OUTSIDE_OF_${name})
    target_link_libraries(${target} PRIVATE ${HALVERN_OUTSIDE_${package}})
  endforeach()
endfunction()

# The root serves "platform/..."; tools/halvern serves "inspect/...".
set(HALVERN_INCLUDE_FOLDERS
  ${PROJECT_SOURCE_DIR}/velmor
  ${PROJECT_SOURCE_DIR}/velmor/src
  ${PROJECT_SOURCE_DIR}/src
  ${PROJECT_SOURCE_DIR}/include
  ${PROJECT_SOURCE_DIR}/tools/halvern
  ${PROJECT_SOURCE_DIR})

function(halvern_link_strata target)
  set(closure)
  foreach(name IN LISTS ARGN)
    list(APPEND closure ${HALVERN_CLOSURE_${name}})
  endforeach()
  list(REMOVE_DUPLICATES closure)
  foreach(name IN LISTS closure)
    # A row of headers alone has no object library.
    if(TARGET halvern_${name})
      target_link_libraries(${target} PRIVATE halvern_${name})
    endif()
    foreach(package IN LISTS HALVERN_OUTSIDE_OF_${name})
      target_link_libraries(${target} PRIVATE ${HALVERN_OUTSIDE_${package}})
    endforeach()
  endforeach()
endfunction()
