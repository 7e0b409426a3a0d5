# libhalvern.so from the objects of every row below the command, and what is installed of it.

add_library(halvern SHARED ${PROJECT_SOURCE_DIR}/exports.map)
add_library(Halvern::halvern ALIAS halvern)
# All its code comes from the object libraries.
set_target_properties(halvern PROPERTIES
  LINKER_LANGUAGE CXX
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}
  # The units service lies beside the library and is found there by its plain name.
  BUILD_RPATH "$ORIGIN"
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
