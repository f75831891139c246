# Script mode: install, then build and run consumers of the installed package.
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out
                  ERROR_VARIABLE out)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " line "${ARGN}")
    message(FATAL_ERROR "failed (${result}): ${line}\n${out}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

if(CONFIG)
  run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}" --config "${CONFIG}")
else()
  run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
endif()

# 1. CMake: find_package(phonepim) and phonepim::phonepim.
run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/cmake-build" -G "${GENERATOR}"
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
    -DCMAKE_C_COMPILER=${CMAKE_C_COMPILER})
run(${CMAKE_COMMAND} --build "${WORK_DIR}/cmake-build")
run("${WORK_DIR}/cmake-build/consumer")
run("${WORK_DIR}/cmake-build/consumer_c")

# 2. pkg-config, as a Makefile would use it.
find_program(PKG_CONFIG pkg-config REQUIRED)
file(GLOB pc_file "${prefix}/lib*/pkgconfig/phonepim.pc" "${prefix}/lib/*/pkgconfig/phonepim.pc")
if(NOT pc_file)
  message(FATAL_ERROR "phonepim.pc was not installed")
endif()
get_filename_component(pc_dir "${pc_file}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
foreach(mode dynamic static)
  if(mode STREQUAL "static")
    set(static_flag --static)
  else()
    set(static_flag "")
  endif()
  run(${PKG_CONFIG} --cflags --libs ${static_flag} phonepim)
  separate_arguments(flags UNIX_COMMAND "${last_output}")
  run(${CMAKE_CXX_COMPILER} -std=c++20 "${CONSUMER_DIR}/consumer.cpp"
      -o "${WORK_DIR}/consumer_pc_${mode}" ${flags})
  run("${WORK_DIR}/consumer_pc_${mode}")
endforeach()
