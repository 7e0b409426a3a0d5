# How our own code is compiled. Everything here hangs on two interface targets that only targets of
# this tree link, privately: no flag of ours reaches a consumer.

if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(CCACHE_PROGRAM ccache)
  if(CCACHE_PROGRAM)
    # Paths below the source folder are hashed as relative ones, so that clones share their results;
    # the sloppiness is what ccache asks for before it works with precompiled headers.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        ${CCACHE_PROGRAM})
  endif()
endif()

set(CMAKE_CXX_FLAGS_RELEASE "-O2")

add_library(halvern_internal_flags INTERFACE)
target_compile_features(halvern_internal_flags INTERFACE cxx_std_20)

# Messages carry the source file: tell it as seen from the root, wherever the clone lies and whether
# the compiler was given an absolute path or one from the build folder.
file(RELATIVE_PATH root_from_build ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR}/)
target_compile_options(halvern_internal_flags INTERFACE
  -Wall
  -Wextra
  -Wpedantic
  -Wshadow
  -Wnon-virtual-dtor
  -Woverloaded-virtual
  -Wundef
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
  -fmacro-prefix-map=${root_from_build}=
  $<$<BOOL:${HALVERN_WERROR}>:-Werror>)
target_compile_definitions(halvern_internal_flags INTERFACE
  $<$<NOT:$<BOOL:${HALVERN_ASSERTIONS}>>:NDEBUG>)

if(HALVERN_SANITIZE)
  target_compile_options(halvern_internal_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  target_compile_definitions(halvern_internal_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(halvern_internal_flags INTERFACE -fsanitize=address,undefined)
endif()
if(HALVERN_FUZZ)
  target_compile_options(halvern_internal_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(HALVERN_COVERAGE)
  target_compile_options(halvern_internal_flags INTERFACE
    -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(halvern_internal_flags INTERFACE -fprofile-instr-generate)
endif()

# The sanitized library is worth a little optimising, since every test runs it; the sanitized tests
# are not, since each of their lines runs once.
add_library(halvern_library_flags INTERFACE)
target_link_libraries(halvern_library_flags INTERFACE halvern_internal_flags)
target_compile_options(halvern_library_flags INTERFACE $<$<BOOL:${HALVERN_SANITIZE}>:-O1>)

add_library(halvern_test_flags INTERFACE)
target_link_libraries(halvern_test_flags INTERFACE halvern_internal_flags)
# g++ 12 takes the concatenation of standard strings, which tests are full of, for overlapping copies.
target_compile_options(halvern_test_flags INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds>
  $<$<BOOL:${HALVERN_SANITIZE}>:-O0>)
