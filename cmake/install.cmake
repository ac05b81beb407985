# What `cmake --install` puts where. Three components: library (the shared one), development (headers, CMake package,
# pkg-config files, the library's link name), tools (the command, its manual and its completion).
#
# A host writes the same includes against the installed tree as against this one: "spi_wrap/to_spi_server.h",
# "src/server/spi_server.h". So the headers keep their folders, below include/dabspi.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The public headers, each with what it includes: a header is installed because somebody may include it or because one of
# these does. scripts/check-install compiles each alone.
set(dabspi_wrapper_headers
    platform/dabspi_export.h
    spi_wrap/spi_recorder.h
    spi_wrap/to_spi_server.h)
set(dabspi_core_headers
    platform/dabspi_export.h
    src/event/batch_backend.h
    src/event/event.h
    src/event/event_backend.h
    src/event/event_names.h
    src/event/event_proc.h
    src/event/event_queue.h
    src/event/monitor.h
    src/event/my_thread.h
    src/event/quiet.h
    src/event/teardown.h
    src/event/term_lock.h
    src/event/worker_lifecycle.h
    src/parse/mot_body.h
    src/parse/mot_date_time.h
    src/parse/serv_elem_id.h
    src/parse/spi_logo_info.h
    src/parse/spi_program_info.h
    src/server/spi_listener.h
    src/server/spi_server.h)
set(dabspi_headers ${dabspi_wrapper_headers} ${dabspi_core_headers})
list(REMOVE_DUPLICATES dabspi_headers)
foreach(header IN LISTS dabspi_headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dabspi/${folder} COMPONENT development)
endforeach()

# The CMake package: dabspi::dabspi is the library; dabspi::wrapper and dabspi::core name the interface that a host uses.
set(dabspi_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/dabspi)
install(TARGETS dabspi EXPORT dabspi
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS dabspi_wrapper dabspi_core EXPORT dabspi)
install(EXPORT dabspi FILE dabspi-targets.cmake NAMESPACE dabspi:: DESTINATION ${dabspi_cmake_dir} COMPONENT development)
configure_package_config_file(cmake/dabspi-config.cmake.in ${PROJECT_BINARY_DIR}/package/dabspi-config.cmake
    INSTALL_DESTINATION ${dabspi_cmake_dir} NO_SET_AND_CHECK_MACRO)
# The SONAME is the major version, and an incompatible change needs another (scripts/check-abi).
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/dabspi-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/package/dabspi-config.cmake ${PROJECT_BINARY_DIR}/package/dabspi-config-version.cmake
    DESTINATION ${dabspi_cmake_dir} COMPONENT development)

# pkg-config: paths start from the file itself, so that an installed tree may be moved. Folders that were given as
# absolute paths do not move; then the prefix does not either.
set(dabspi_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(dabspi_pc_prefix ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
    file(RELATIVE_PATH dabspi_pc_prefix /root/${dabspi_pc_dir} /root)
    string(REGEX REPLACE "/$" "" dabspi_pc_prefix ${dabspi_pc_prefix})
    set(dabspi_pc_prefix "\${pcfiledir}/${dabspi_pc_prefix}")
endif()
foreach(kind LIB INCLUDE)
    set(dabspi_pc_${kind}DIR ${CMAKE_INSTALL_${kind}DIR})
    if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_${kind}DIR})
        set(dabspi_pc_${kind}DIR "\${prefix}/${CMAKE_INSTALL_${kind}DIR}")
    endif()
endforeach()
foreach(name dabspi dabspi-core)
    configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/package/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc DESTINATION ${dabspi_pc_dir} COMPONENT development)
endforeach()

if(DABSPI_TOOLS)
    # Optional, as is what is made with it: a build of the target dabspi alone has none of it, and can be installed.
    install(TARGETS dabspi_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools OPTIONAL)
    if(TARGET dabspi_manual)
        install(DIRECTORY ${PROJECT_BINARY_DIR}/share/man/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT tools
            OPTIONAL)
        install(FILES ${PROJECT_BINARY_DIR}/share/bash-completion/completions/dabspi
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools OPTIONAL)
    endif()
endif()
