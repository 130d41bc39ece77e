# Installs the build into a fresh prefix, builds the consumer against it and runs it; the program that README.md shows is built
# as it stands there.
set(work "${BUILD}/package_test")
file(REMOVE_RECURSE "${work}")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nended with ${result}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install "${BUILD}" --prefix "${work}/prefix")
file(READ "${README}" readme)
if(NOT readme MATCHES "```cpp\n([^`]*)```")
  message(FATAL_ERROR "README.md shows no program")
endif()
file(WRITE "${work}/shown.cpp" "${CMAKE_MATCH_1}")

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S "${CONSUMER}" -B "${work}/build" -G "${GENERATOR}" "-DCMAKE_PREFIX_PATH=${work}/prefix"
  "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${flags}" -DCMAKE_BUILD_TYPE=Debug
  "-DSHOWN_PROGRAM=${work}/shown.cpp")
run(${CMAKE_COMMAND} --build "${work}/build")
run("${work}/build/consumer")
if(NOT output MATCHES "NATIVE")
  message(FATAL_ERROR "the consumer printed: ${output}")
endif()
