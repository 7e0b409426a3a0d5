# One fuzz target per reader.
#
#   halvern_fuzzer(<name> SOURCES <file>... STRATA <row>...)
#
# makes fuzz_<name>, and the test that replays fuzz/corpus/<name>.

# The readers are built for the targets that need them, and nothing else is.
add_custom_target(halvern_fuzzers)

function(halvern_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;STRATA")
  set(target fuzz_${name})
  add_executable(${target} EXCLUDE_FROM_ALL ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzzers)
  target_include_directories(${target} PRIVATE ${HALVERN_INCLUDE_FOLDERS})
  target_link_libraries(${target} PRIVATE halvern_library_flags)
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  halvern_link_strata(${target} ${arg_STRATA})
  add_dependencies(halvern_fuzzers ${target})
  add_test(NAME replay.${name}
    COMMAND ${target} -runs=0 -timeout=60 -rss_limit_mb=1024
            ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
endfunction()
