# Uses ccache where it is installed: what was compiled before, here or in another checkout, is not compiled again.
# -DDABSPI_CCACHE=OFF leaves it out.
option(DABSPI_CCACHE "Compile through ccache where it is installed" ON)
if(NOT DABSPI_CCACHE OR CMAKE_CXX_COMPILER_LAUNCHER)
    return()
endif()
find_program(DABSPI_CCACHE_PROGRAM ccache)
mark_as_advanced(DABSPI_CCACHE_PROGRAM)
if(NOT DABSPI_CCACHE_PROGRAM)
    return()
endif()
# Precompiled headers are compared by their contents. Another checkout has the same objects: paths below it are relative, and its
# own folder, which debug information names, does not count.
set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${DABSPI_CCACHE_PROGRAM})
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
else()
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
endif()
