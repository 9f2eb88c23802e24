# 32-bit x86: 64-bit integers in records are aligned to 4 bytes.
set(triple i686-linux-gnu)
set(processor i686)
set(qemu qemu-i386)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
