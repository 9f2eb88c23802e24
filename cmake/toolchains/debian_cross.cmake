# What Debian's cross compilers have in common. A toolchain file sets `triple`, `processor` and
# `qemu`, the qemu-user program that runs what is built, and includes this one.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${processor})

set(CMAKE_CXX_COMPILER ${triple}-g++)
# Debian's cross libraries are below /usr/<triple>; none of the host's may be found instead.
set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# Static programs start faster under an emulator, and qemu-i386 cannot fork others: death tests hang.
# The linker would warn that GoogleTest, which can look up a host's name, still needs a library.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-warnings")
set(CMAKE_CROSSCOMPILING_EMULATOR ${qemu})
