# cmake -DPROGRAM=<file> -DDIGEST=<file> -P: writes the 16 bytes of the program's MD5.
file(MD5 "${PROGRAM}" text)
string(REGEX REPLACE "(..)" "\\\\x\\1" escapes "${text}")
# CMake itself writes no zero bytes.
execute_process(COMMAND printf "${escapes}" OUTPUT_FILE "${DIGEST}" COMMAND_ERROR_IS_FATAL ANY)
file(SIZE "${DIGEST}" size)
if(NOT size EQUAL 16)
    message(FATAL_ERROR "${DIGEST} has ${size} bytes in place of 16")
endif()
