# 64-bit RISC-V: plain char is unsigned.
set(triple riscv64-linux-gnu)
set(processor riscv64)
set(qemu qemu-riscv64)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
