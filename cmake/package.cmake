# What is installed, in three components that are three Debian packages:
#   libzrlsw      the library alone: what goes to the device
#   libzrlsw-dev  headers, CMake package, pkg-config file, API reference
#   zrlsw-bench   the bench manager, the stand-in with its header, examples, documents, completion
set(INSTALL_CMAKE ${CMAKE_INSTALL_LIBDIR}/cmake/zrlsw)
set(INSTALL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/zrlsw)
set(INSTALL_EXAMPLES ${CMAKE_INSTALL_DATADIR}/zrlsw/examples)
set(INSTALL_DOCUMENTS ${CMAKE_INSTALL_DATADIR}/doc/zrlsw-bench)
# An installation may be moved: its pkg-config files start from where they lie.
file(RELATIVE_PATH ZRLSW_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)

install(TARGETS zrlsw EXPORT zrlswTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libzrlsw)

# ---- libzrlsw-dev -----------------------------------------------------------------------------
# base/ is the library's own ground: private headers all.
install(DIRECTORY src/ DESTINATION ${INSTALL_HEADERS} COMPONENT libzrlsw-dev FILES_MATCHING PATTERN "*.h"
    PATTERN "base" EXCLUDE)
install(EXPORT zrlswTargets NAMESPACE zrlsw:: DESTINATION ${INSTALL_CMAKE} COMPONENT libzrlsw-dev)
configure_package_config_file(cmake/zrlswConfig.cmake.in zrlswConfig.cmake INSTALL_DESTINATION ${INSTALL_CMAKE})
write_basic_package_version_file(zrlswConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zrlswConfig.cmake ${PROJECT_BINARY_DIR}/zrlswConfigVersion.cmake
    DESTINATION ${INSTALL_CMAKE} COMPONENT libzrlsw-dev)
configure_file(cmake/zrlsw.pc.in zrlsw.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zrlsw.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT libzrlsw-dev)
# `./run docs` makes it.
install(DIRECTORY build/docs/html DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libzrlsw-dev COMPONENT libzrlsw-dev
    OPTIONAL)

# ---- zrlsw-bench ------------------------------------------------------------------------------
if(ZRLSW_DESKTOP)
    install(TARGETS zrbench RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT zrlsw-bench)
    install(TARGETS zrsim EXPORT zrlswSimTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT zrlsw-bench)
    install(TARGETS zrrecord zrreplay LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT zrlsw-bench)
    install(EXPORT zrlswSimTargets NAMESPACE zrlsw:: DESTINATION ${INSTALL_CMAKE} COMPONENT zrlsw-bench)
    install(FILES sim/zrsim.h DESTINATION ${INSTALL_HEADERS}/sim COMPONENT zrlsw-bench)
    configure_file(cmake/zrsim.pc.in zrsim.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/zrsim.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT zrlsw-bench)
    install(DIRECTORY examples/ DESTINATION ${INSTALL_EXAMPLES} COMPONENT zrlsw-bench)

    # The documents' links into the source lead nowhere once installed: their words stay.
    file(GLOB DOCUMENTS CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} README.md docs/*.md)
    foreach(document ${DOCUMENTS})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${document})
        file(READ ${document} text)
        string(REGEX REPLACE "\\[([^]]*)\\]\\((\\.\\./)?(src|sim|tests|tools|bench)[^)]*\\)" "\\1" text "${text}")
        file(CONFIGURE OUTPUT documents/${document} CONTENT "${text}" @ONLY)
    endforeach()
    install(DIRECTORY ${PROJECT_BINARY_DIR}/documents/ DESTINATION ${INSTALL_DOCUMENTS} COMPONENT zrlsw-bench)
    install(FILES docs/report.png DESTINATION ${INSTALL_DOCUMENTS}/docs COMPONENT zrlsw-bench)
    # Documents refer to examples beside them.
    install(CODE "file(CREATE_LINK ../../zrlsw/examples
        \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${INSTALL_DOCUMENTS}/examples SYMBOLIC)" COMPONENT zrlsw-bench)

    # The program itself writes them: they follow its options.
    foreach(shell bash zsh)
        add_custom_command(OUTPUT completion.${shell} COMMAND zrbench completion ${shell} > completion.${shell}
            DEPENDS zrbench)
        list(APPEND GENERATED completion.${shell})
    endforeach()
    add_custom_command(OUTPUT zrbench.schema.json COMMAND zrbench schema > zrbench.schema.json DEPENDS zrbench)
    add_custom_command(OUTPUT zrbench.1.gz COMMAND zrbench commands --man > zrbench.1
        COMMAND gzip -9nkf zrbench.1 DEPENDS zrbench)
    add_custom_target(zrbench_files ALL DEPENDS ${GENERATED} zrbench.schema.json zrbench.1.gz)
    install(FILES ${PROJECT_BINARY_DIR}/zrbench.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT zrlsw-bench)
    install(FILES ${PROJECT_BINARY_DIR}/zrbench.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/zrlsw
        COMPONENT zrlsw-bench)
    install(FILES ${PROJECT_BINARY_DIR}/completion.bash RENAME zrbench
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT zrlsw-bench)
    install(FILES ${PROJECT_BINARY_DIR}/completion.zsh RENAME _zrbench
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT zrlsw-bench)
endif()

# ---- Debian packages --------------------------------------------------------------------------
set(CPACK_PACKAGE_CONTACT "zrlsw developers <developers@zrlsw.example.org>")
# The version's date is the one that docs/changes.md gives it.
file(STRINGS docs/changes.md RELEASE REGEX "^## ${PROJECT_VERSION} \\(" LIMIT_COUNT 1)
string(REGEX REPLACE ".*\\((.*)\\)" "\\1" RELEASE_DATE "${RELEASE}")
execute_process(COMMAND date -u -R -d "${RELEASE_DATE}" OUTPUT_VARIABLE RELEASE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
set(COPYRIGHT "Copyright 2026 the zrlsw developers. No licence has been granted: all rights are reserved.\n")
file(WRITE ${PROJECT_BINARY_DIR}/debian/libzrlsw/copyright "${COPYRIGHT}")
file(WRITE ${PROJECT_BINARY_DIR}/debian/libzrlsw-dev/copyright "${COPYRIGHT}")
# The headers of these are compiled into the programs.
set(COMPILED_IN nlohmann-json3-dev libcli11-dev libfmt-dev)
foreach(package ${COMPILED_IN})
    if(EXISTS /usr/share/doc/${package}/copyright)
        file(READ /usr/share/doc/${package}/copyright text)
        string(APPEND COPYRIGHT "\nIncludes parts of ${package}:\n\n${text}")
    endif()
endforeach()
file(WRITE ${PROJECT_BINARY_DIR}/debian/zrlsw-bench/copyright "${COPYRIGHT}")
foreach(package libzrlsw libzrlsw-dev zrlsw-bench)
    set(folder ${PROJECT_BINARY_DIR}/debian/${package})
    file(WRITE ${folder}/changelog "${package} (${PROJECT_VERSION}) stable; urgency=medium\n
  * The changes stand in docs/changes.md of zrlsw-bench.\n
 -- ${CPACK_PACKAGE_CONTACT}  ${RELEASE_DATE}\n")
    execute_process(COMMAND gzip -9nc changelog OUTPUT_FILE changelog.gz WORKING_DIRECTORY ${folder})
    install(FILES ${folder}/copyright ${folder}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
        COMPONENT ${package})
endforeach()
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBZRLSW_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
set(CPACK_DEBIAN_ZRLSW-BENCH_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL libzrlsw libzrlsw-dev zrlsw-bench)
set(CPACK_PACKAGE_VENDOR zrlsw)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_LIBZRLSW-DEV_DEBUGINFO_PACKAGE OFF)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(CMAKE_CROSSCOMPILING)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${ZRLSW_ARM64_ROOT}/lib/aarch64-linux-gnu
        ${ZRLSW_ARM64_ROOT}/usr/lib/aarch64-linux-gnu ${ZRLSW_ARM64_ROOT}/usr/lib)
endif()
set(CPACK_DEBIAN_LIBZRLSW_PACKAGE_NAME libzrlsw)
set(CPACK_DEBIAN_LIBZRLSW_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBZRLSW_DESCRIPTION "Chip adaptation library of an embedded gateway
Fills a switch manager's twelve operation tables and carries every call down
to the SDK of the gateway's switch chip. It is loaded by the manager; the
manager, the SDK and the board provide the symbols that it leaves undefined.")
set(CPACK_DEBIAN_LIBZRLSW-DEV_PACKAGE_NAME libzrlsw-dev)
set(CPACK_DEBIAN_LIBZRLSW-DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBZRLSW-DEV_PACKAGE_DEPENDS "libzrlsw (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_LIBZRLSW-DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_LIBZRLSW-DEV_DESCRIPTION "Chip adaptation library of an embedded gateway (development)
Headers in C11 and C++20, a CMake package, a pkg-config file and the reference
of all operations as HTML.")
set(CPACK_DEBIAN_ZRLSW-BENCH_PACKAGE_NAME zrlsw-bench)
set(CPACK_DEBIAN_ZRLSW-BENCH_PACKAGE_SECTION devel)
# Loaded by name, so not seen by who computes dependencies.
set(CPACK_DEBIAN_ZRLSW-BENCH_PACKAGE_DEPENDS "libzrlsw (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_ZRLSW-BENCH_PACKAGE_SUGGESTS libzrlsw-dev)
set(CPACK_DEBIAN_ZRLSW-BENCH_DESCRIPTION "Bench manager and stand-in for the gateway's chip adaptation library
zrbench drives libzrlsw.so through the switch manager's operation tables, from
device files or by hand. libzrsim.so stands in for switch chips, manager and
board, so that all of it runs without hardware.")
include(CPack)
