# IBM Z: big-endian, plain char is unsigned.
set(triple s390x-linux-gnu)
set(processor s390x)
set(qemu qemu-s390x)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
