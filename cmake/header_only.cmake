# dabspi_header_only(TARGET HEADERS): an imported target for a library that is headers alone (the folder HEADERS of the
# desk's /usr/include), for cross builds: the desk's whole /usr/include would hide the target's C library.
function(dabspi_header_only target headers)
    if(NOT IS_DIRECTORY /usr/include/${headers})
        message(FATAL_ERROR "/usr/include/${headers} was not found: install nlohmann-json3-dev and libcli11-dev, "
                            "or configure with -DDABSPI_TOOLS=OFF")
    endif()
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/header-only)
    file(CREATE_LINK /usr/include/${headers} ${CMAKE_BINARY_DIR}/header-only/${headers} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/header-only)
endfunction()
