# cmake -DPROGRAM=... -DEXPECTED=... -P compare_output.cmake
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
file(READ ${EXPECTED} expected)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}\n${errors}")
endif()
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} wrote\n${output}\nand not what ${EXPECTED} has:\n${expected}")
endif()
