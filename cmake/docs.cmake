# The target `docs`: the reference of the public headers, by Doxygen, in docs/html of the build. A header that is installed is
# documented, and what is not described in it is an error.
find_program(DABSPI_DOXYGEN doxygen)
if(NOT DABSPI_DOXYGEN)
    add_custom_target(docs
        COMMAND ${CMAKE_COMMAND} -E echo "The reference needs doxygen, which was not found: install it and configure again"
        COMMAND ${CMAKE_COMMAND} -E false
        VERBATIM)
    return()
endif()
list(TRANSFORM dabspi_headers PREPEND "${PROJECT_SOURCE_DIR}/" OUTPUT_VARIABLE dabspi_documented)
list(APPEND dabspi_documented ${PROJECT_SOURCE_DIR}/docs/doxygen/mainpage.md)
list(TRANSFORM dabspi_documented REPLACE "(.+)" "\"\\1\"")
list(JOIN dabspi_documented " " dabspi_documented)
configure_file(docs/doxygen/Doxyfile.in ${PROJECT_BINARY_DIR}/docs/Doxyfile @ONLY)
add_custom_target(docs COMMAND ${DABSPI_DOXYGEN} ${PROJECT_BINARY_DIR}/docs/Doxyfile
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
