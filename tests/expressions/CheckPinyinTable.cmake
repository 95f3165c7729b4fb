# Runs tools/make_pinyin_table.py into OUTPUT and fails when the result differs from the
# committed src/expressions/PinyinTable.cpp.
execute_process(
    COMMAND ${PYTHON} ${SOURCE_DIR}/tools/make_pinyin_table.py --output ${OUTPUT}
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "tools/make_pinyin_table.py failed (${status})")
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E compare_files ${OUTPUT} ${SOURCE_DIR}/src/expressions/PinyinTable.cpp
    RESULT_VARIABLE differs)
if(NOT differs EQUAL 0)
    message(FATAL_ERROR "src/expressions/PinyinTable.cpp is not what tools/make_pinyin_table.py makes; "
                        "run the script and commit the table")
endif()
