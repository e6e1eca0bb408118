# Installs the build into a fresh folder, builds the outside project against it and runs it.

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed (${status}): ${ARGV}\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix)

set(flags)
if(SANITIZE)
    set(flags -DCMAKE_CXX_FLAGS=-fsanitize=${SANITIZE})
endif()
run(${CMAKE_COMMAND} -G Ninja -S ${OUTSIDE_DIR} -B ${WORK_DIR}/build -DCMAKE_CXX_COMPILER=${CXX}
    -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix ${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/outside)
run(${WORK_DIR}/prefix/bin/kel --help)
