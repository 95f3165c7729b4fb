# Runs a table generator into OUTPUT and fails when the result differs from the committed
# table: cmake -DPYTHON=… -DSCRIPT=tools/x.py -DTABLE=src/…/X.cpp -DSOURCE_DIR=… -DOUTPUT=…
#                -P cmake/CheckGenerated.cmake
execute_process(
    COMMAND ${PYTHON} ${SOURCE_DIR}/${SCRIPT} --output ${OUTPUT}
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${SCRIPT} failed (${status})")
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E compare_files ${OUTPUT} ${SOURCE_DIR}/${TABLE}
    RESULT_VARIABLE differs)
if(NOT differs EQUAL 0)
    message(FATAL_ERROR "${TABLE} is not what ${SCRIPT} makes; run the script and commit the table")
endif()
