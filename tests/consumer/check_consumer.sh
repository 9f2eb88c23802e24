#!/bin/sh
# check_consumer.sh subdirectory|installed COMPILER ROOT WORK [TOOLCHAIN]
# Builds and runs two small programs of another project against this library: one brings its own
# formatting functions, one takes the default ones and names nothing but them. TOOLCHAIN is CMake's
# toolchain file of another platform; the programs then run in its emulator.
set -eu
way=$1 compiler=$2 root=$3 work=$4 toolchain=${5:-}

rm -rf "$work"
mkdir -p "$work/app"
cat >"$work/app/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 11)
if("$way" STREQUAL "subdirectory")
    add_subdirectory("$root" library)
    get_property(targets DIRECTORY "$root" PROPERTY BUILDSYSTEM_TARGETS)
    if(NOT "\${targets}" STREQUAL "quorva_zrp;quorva_zrp_text")
        message(FATAL_ERROR "as part of another project more is built than the library: \${targets}")
    endif()
else()
    find_package(quorva_zrp 0.1 REQUIRED)
endif()
add_executable(own own.cpp)
target_link_libraries(own PRIVATE quorva::zrp)
add_executable(given given.cpp)
target_link_libraries(given PRIVATE quorva::zrp_text)
add_executable(both given.cpp)
target_link_libraries(both PRIVATE quorva::zrp quorva::zrp_text)

enable_testing()
function(expect program printed)
    add_test(NAME \${program} COMMAND \${program})
    set_tests_properties(\${program} PROPERTIES PASS_REGULAR_EXPRESSION "\${printed}")
endfunction()
set(end "\r?\n\$")
expect(own "^<\\\\[dwReserved\\\\]>\${end}")
expect(given "^\\\\[dwReserved\\\\] 0;\${end}")
expect(both "^\\\\[dwReserved\\\\] 0;\${end}")
CMAKE

cat >"$work/app/given.cpp" <<'CPP'
#include "protocol/quorva_zrp.h"

#include <stdio.h>

int main() {
    quorva_zrp::TZRPCStopBody body;
    body.construct();
    char text[64];
    puts(body.visualize_ex(text, sizeof(text), nullptr, 0, ';'));
}
CPP

cat >"$work/app/own.cpp" <<'CPP'
#include "Common/Source/Core/BRX/BrxBufUtil.h"
#include "protocol/quorva_zrp.h"

#include <stdio.h>

namespace Quorva {
int32_t BrxBufUtil::printVariable(BrxWriteBuf& buf, int, char, const char* label, const char*, ...) {
    return buf.textize("<%s>", label);
}
int32_t BrxBufUtil::printVariable(BrxWriteBuf&, int, char, const char*, bool) { return 0; }
int32_t BrxBufUtil::printArray(BrxWriteBuf&, int, char, const char*, long long) { return 0; }
int32_t BrxBufUtil::printString(BrxWriteBuf&, int, char, const char*, const char*) { return 0; }
}  // namespace Quorva

int main() {
    quorva_zrp::TZRPCStopBody body;
    body.construct();
    char text[64];
    puts(body.visualize_ex(text, sizeof(text), nullptr, 0, ';'));
}
CPP

if [ -n "$toolchain" ]; then
    set -- -DCMAKE_TOOLCHAIN_FILE="$toolchain"
else
    set -- -DCMAKE_CXX_COMPILER="$compiler"
fi
if [ "$way" = installed ]; then
    cmake -S "$root" -B "$work/library" "$@" \
        -DQUORVA_ZRP_TESTS=OFF -DQUORVA_ZRP_EXAMPLES=OFF >/dev/null
    cmake --build "$work/library" >/dev/null
    cmake --install "$work/library" --prefix "$work/prefix" >/dev/null
    set -- "$@" -DCMAKE_PREFIX_PATH="$work/prefix"
fi
cmake -S "$work/app" -B "$work/build" "$@" >/dev/null
cmake --build "$work/build" >/dev/null
ctest --test-dir "$work/build" --no-tests=error --output-on-failure
