# 64-bit ARM: plain char is unsigned.
set(triple aarch64-linux-gnu)
set(processor aarch64)
set(qemu qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
