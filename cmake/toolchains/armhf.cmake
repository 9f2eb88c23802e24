# 32-bit ARM: plain char is unsigned, 64-bit integers are aligned to 8 bytes.
set(triple arm-linux-gnueabihf)
set(processor arm)
set(qemu qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
