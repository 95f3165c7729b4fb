# Runs tools/make_common_cjk.py into OUTPUT and fails when the result differs from the
# committed src/platform/CommonCjk.cpp.
execute_process(
    COMMAND ${PYTHON} ${SOURCE_DIR}/tools/make_common_cjk.py --output ${OUTPUT}
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "tools/make_common_cjk.py failed (${status})")
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E compare_files ${OUTPUT} ${SOURCE_DIR}/src/platform/CommonCjk.cpp
    RESULT_VARIABLE differs)
if(NOT differs EQUAL 0)
    message(FATAL_ERROR "src/platform/CommonCjk.cpp is not what tools/make_common_cjk.py makes; "
                        "run the script and commit the table")
endif()
