# Fails when a C++ source under src/, tests/ or bench/ differs from what clang-format makes of it.
file(GLOB_RECURSE sources
    ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.h
    ${SOURCE_DIR}/tests/*.cpp ${SOURCE_DIR}/tests/*.h
    ${SOURCE_DIR}/bench/*.cpp ${SOURCE_DIR}/bench/*.h)
execute_process(COMMAND ${CLANG_FORMAT} --dry-run --Werror ${sources} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "Some sources are not formatted: run clang-format -i on them.")
endif()
