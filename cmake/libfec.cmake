# libfec, which has neither a CMake package nor a pkg-config file: DABSPI_FEC_LIBRARY and DABSPI_FEC_HEADERS.
find_library(DABSPI_FEC_LIBRARY fec)
find_path(DABSPI_FEC_HEADERS fec.h)
if(NOT DABSPI_FEC_LIBRARY OR NOT DABSPI_FEC_HEADERS)
    message(FATAL_ERROR "The dabspi command needs libfec, which was not found: install it (on Debian and Ubuntu "
                        "the package is libfec-dev) or configure with -DDABSPI_TOOLS=OFF")
endif()
