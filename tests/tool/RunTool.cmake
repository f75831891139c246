# Script mode: runs the tool and checks its exit status, and optionally its
# standard output against a file and its standard error against a regex.
#   TOOL, ARGS (a |-separated list), EXPECT_EXIT, [EXPECT_STDOUT file], [EXPECT_STDERR regex],
#   [STDIN file], [WORKING_DIRECTORY]
string(REPLACE "|" ";" ARGS "${ARGS}")
if(STDIN)
  set(input_args INPUT_FILE "${STDIN}")
endif()
if(NOT WORKING_DIRECTORY)
  set(WORKING_DIRECTORY ".")
endif()
execute_process(COMMAND "${TOOL}" ${ARGS} ${input_args}
  WORKING_DIRECTORY "${WORKING_DIRECTORY}"
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT "${status}" STREQUAL "${EXPECT_EXIT}")
  message(FATAL_ERROR "exit status ${status}, expected ${EXPECT_EXIT}\nstdout:\n${out}\nstderr:\n${err}")
endif()
if(EXPECT_STDOUT)
  file(READ "${EXPECT_STDOUT}" expected)
  if(NOT out STREQUAL expected)
    file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/actual.out" "${out}")
    message(FATAL_ERROR "stdout differs from ${EXPECT_STDOUT}\n--- got:\n${out}\n--- stderr:\n${err}")
  endif()
endif()
if(EXPECT_STDERR)
  if(NOT err MATCHES "${EXPECT_STDERR}")
    message(FATAL_ERROR "stderr does not match '${EXPECT_STDERR}':\n${err}")
  endif()
endif()
