# 64-bit Arm Linux with Debian's cross compiler; programs run under qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
# Further libraries of the target, unpacked (`./run arm64`); without them the bench manager goes without what they do.
get_filename_component(ZRLSW_ARM64_ROOT ${CMAKE_CURRENT_LIST_DIR}/../build/arm64-root ABSOLUTE)
if(EXISTS ${ZRLSW_ARM64_ROOT}/lib/ld-linux-aarch64.so.1)
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64;-L;${ZRLSW_ARM64_ROOT})
    foreach(libraries lib usr/lib)
        string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT
            " -Wl,-rpath-link,${ZRLSW_ARM64_ROOT}/${libraries}/aarch64-linux-gnu")
    endforeach()
else()
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64;-L;/usr/aarch64-linux-gnu)
endif()
# Header-only packages of the build machine serve the target as well; its libraries do not.
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu ${ZRLSW_ARM64_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
