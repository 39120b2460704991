# Builds for Linux on arm64 with Debian's cross compiler; the tests run under QEMU.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)

# Libraries are those of the other architecture; headers that have no library are everybody's.
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)

# Where Debian's own packages of that architecture have them.
set(CMAKE_INSTALL_LIBDIR lib/aarch64-linux-gnu CACHE PATH "Where libraries are installed")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/arm64-run)
