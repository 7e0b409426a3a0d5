# libhalvern.so from the objects of every row below the command, and the programs made with it.
#
#   halvern_program(<target> NAME <name> SOURCES <file>... STRATA <row>...)
#       bin/<name> of the objects of these rows and of the manager's, so that its process holds one
#       manager
#   halvern_host_program(<target> SOURCES <file>...)
#       bin/<target> of include/ and libhalvern.so alone, as a host is made

add_library(halvern SHARED ${PROJECT_SOURCE_DIR}/exports.map)
add_library(Halvern::halvern ALIAS halvern)
# All its code comes from the object libraries.
set_target_properties(halvern PROPERTIES
  LINKER_LANGUAGE CXX
  VERSION ${PROJECT_VERSION}
  # Before 1.0 every minor version may change the interfaces.
  SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
  # The units service lies beside the library and is found there by its plain name.
  BUILD_WITH_INSTALL_RPATH ON
  INSTALL_RPATH "$ORIGIN"
  LINK_DEPENDS ${PROJECT_SOURCE_DIR}/exports.map)
target_include_directories(halvern INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(halvern INTERFACE cxx_std_20)
target_link_libraries(halvern PRIVATE $<BUILD_INTERFACE:halvern_internal_flags>)
# Visibility hides what is ours; the script also hides the templates of other libraries that were
# instantiated here.
target_link_options(halvern PRIVATE
  -Wl,--version-script=${PROJECT_SOURCE_DIR}/exports.map
  $<$<NOT:$<BOOL:${HALVERN_SANITIZE}>>:-Wl,--no-undefined>)
halvern_link_strata(halvern manager)

function(halvern_program target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME" "SOURCES;STRATA")
  add_executable(${target} ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${arg_NAME}
    # Where the units service lies, in the build tree and in an install tree.
    BUILD_RPATH "$ORIGIN/../lib"
    INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  target_include_directories(${target} PRIVATE ${HALVERN_INCLUDE_FOLDERS})
  target_link_libraries(${target} PRIVATE halvern_library_flags)
  halvern_link_strata(${target} manager ${arg_STRATA})
  add_dependencies(${target} halvernunits)
endfunction()

function(halvern_host_program target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES")
  add_executable(${target} ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE halvern_internal_flags halvern)
  add_dependencies(${target} halvernunits)
endfunction()
