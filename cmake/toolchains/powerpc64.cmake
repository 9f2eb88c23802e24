# 64-bit POWER: big-endian, plain char is unsigned.
set(triple powerpc64-linux-gnu)
set(processor ppc64)
set(qemu qemu-ppc64)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
