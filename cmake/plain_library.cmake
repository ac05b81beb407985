# dabspi_plain_library(TARGET HEADER LIBRARY PACKAGE): an imported target for a library that comes without a CMake package.
function(dabspi_plain_library target header library package)
    find_path(${target}_headers ${header})
    find_library(${target}_library ${library})
    mark_as_advanced(${target}_headers ${target}_library)
    if(NOT ${target}_headers OR NOT ${target}_library)
        message(FATAL_ERROR "The dabspi command needs lib${library}, which was not found: install it (on Debian and Ubuntu "
                            "the package is ${package}) or configure with -DDABSPI_TOOLS=OFF")
    endif()
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${${target}_headers})
    target_link_libraries(${target} INTERFACE ${${target}_library})
endfunction()
