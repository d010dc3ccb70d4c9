# Builds for 64-bit Arm on another machine and runs what was built there by emulation. The sysroot comes from
# scripts/sysroot-arm64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(KEST_ARM64_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-arm64 CACHE PATH "Libraries and headers for arm64")
# Small projects that try the compiler read this file as well.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KEST_ARM64_SYSROOT)
get_filename_component(CMAKE_SYSROOT ${KEST_ARM64_SYSROOT} ABSOLUTE)
if(NOT EXISTS ${CMAKE_SYSROOT}/.complete)
    message(FATAL_ERROR "${CMAKE_SYSROOT} is not complete: run scripts/sysroot-arm64")
endif()

set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
    ${CMAKE_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${CMAKE_SYSROOT}/usr/lib/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)

find_program(KEST_ARM64_EMULATOR qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${KEST_ARM64_EMULATOR} -L ${CMAKE_SYSROOT})
