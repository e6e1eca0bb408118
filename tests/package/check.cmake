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

# The Designer plugin, in its own folder below the prefix, finds the libraries there.
execute_process(COMMAND ${WORK_DIR}/prefix/bin/kel doctor --plugins ${WORK_DIR}/prefix/${PLUGIN_DIR}
    OUTPUT_VARIABLE report)
if(NOT report MATCHES "ok +Qt Designer plugin ${WORK_DIR}/prefix/")
    message(FATAL_ERROR "the installed Designer plugin does not load\n${report}")
endif()
