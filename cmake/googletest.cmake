# GoogleTest and GoogleMock. For cross builds from their sources (package googletest): Debian has them built for the desk alone.
if(CMAKE_CROSSCOMPILING)
    if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
        message(FATAL_ERROR "The tests of a cross build need the sources of GoogleTest: install googletest, or configure with "
                            "-DDABSPI_TESTS=OFF")
    endif()
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
else()
    find_package(GTest)
    if(NOT GTest_FOUND)
        message(FATAL_ERROR "The tests need GoogleTest: install libgtest-dev and libgmock-dev, or configure with "
                            "-DDABSPI_TESTS=OFF")
    endif()
endif()
