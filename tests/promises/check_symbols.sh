#!/bin/sh
# check_symbols.sh ARCHIVE [NM]
#
# Holds a static library of this project to two promises: it calls nothing of its surroundings but
# what is listed below (so it neither allocates nor throws, locks, or does input or output), and it
# has no data that is written at run time or that a loader has to fix up.
#
# NM names the symbol lister, "nm" by default; the objdump beside it lists the sections. For plain
# builds: sanitizers and coverage bring calls and data of their own.
set -eu

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: check_symbols.sh ARCHIVE [NM]" >&2
    exit 2
fi
archive=$1
nm=${2:-nm}
# .../aarch64-linux-gnu-nm and llvm-nm-14 have their objdump beside them; gcc-nm wraps plain nm.
objdump=$(printf '%s\n' "$nm" | sed -e 's/gcc-nm\(-[0-9.]*\)\{0,1\}$/nm/' \
    -e 's/nm\(-[0-9.]*\)\{0,1\}$/objdump\1/')

fail() {
    echo "check_symbols: $archive: $1" >&2
    exit 1
}

[ -f "$archive" ] || fail "there is no such file"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What the library may call. __mingw_vsnprintf is vsnprintf on Windows. The _chk forms are the same
# functions in a hardened build, where __stack_chk_fail ends a program whose stack was overrun.
cat >"$work/allowed" <<'LIST'
memchr
memcmp
memcpy
memmove
memset
strcmp
strlen
strncmp
strncpy
strnlen
vsnprintf
__memcpy_chk
__memmove_chk
__memset_chk
__strncpy_chk
__strlen_chk
__vsnprintf_chk
__stack_chk_fail
__assert_fail
__assert2
__assert_rtn
_assert
__imp__assert
_ZdaPv
_ZN6Quorva10BrxBufUtil13printVariableERNS_11BrxWriteBufEicPKcS4_z
_ZN6Quorva10BrxBufUtil13printVariableERNS_11BrxWriteBufEicPKcb
_ZN6Quorva10BrxBufUtil10printArrayERNS_11BrxWriteBufEicPKcx
_ZN6Quorva10BrxBufUtil11printStringERNS_11BrxWriteBufEicPKcS4_
_GLOBAL_OFFSET_TABLE_
__mingw_vsnprintf
LIST
# What compilers put into code: arithmetic that a machine lacks, the format of 32-bit ARM's tables.
cat >>"$work/allowed" <<'LIST'
__aeabi_unwind_cpp_pr0
__clzdi2
__ctzdi2
LIST
LC_ALL=C sort -o "$work/allowed" "$work/allowed"

# One line per symbol: name and type letter. Lines of other shapes name the members.
"$nm" -P "$archive" >"$work/nm" || fail "$nm cannot read it"
awk 'NF >= 2 && $2 ~ /^[A-Za-z]$/ { print $1, $2 }' "$work/nm" >"$work/symbols"

awk '$2 !~ /^[Uwv]$/ { print $1 }' "$work/symbols" | LC_ALL=C sort -u >"$work/defined"
awk '$2 ~ /^[Uwv]$/ { print $1 }' "$work/symbols" | LC_ALL=C sort -u >"$work/undefined"
[ -s "$work/defined" ] || fail "it defines no symbol, so there is nothing to check"

LC_ALL=C comm -23 "$work/undefined" "$work/defined" >"$work/wanted"
LC_ALL=C comm -23 "$work/wanted" "$work/allowed" >"$work/foreign"

# Data by symbol: d, D initialised, b, B zeroed, C common, g, G, s, S small, u unique in a process.
# Names with a leading dot are the sections themselves, which are measured below; those in .opd are
# what functions are called by on 64-bit POWER.
"$objdump" -t "$archive" >"$work/table" || fail "$objdump cannot read it"
awk '/ \.opd[ \t]/ { print $NF }' "$work/table" | LC_ALL=C sort -u >"$work/descriptors"
awk '$1 !~ /^\./ && $2 ~ /^[dDbBCgGsSu]$/ { print $1, "(" $2 ")" }' "$work/symbols" |
    LC_ALL=C sort -u | LC_ALL=C join -v 1 - "$work/descriptors" >"$work/data"

# Data by section, which also shows what has no symbol: data, thread data, tables of functions that
# run before main, and constants that hold addresses.
"$objdump" -h "$archive" >"$work/objdump" || fail "$objdump cannot read it"
awk '$1 ~ /^[0-9]+$/ && $3 !~ /^0+$/ &&
     $2 ~ /^\.(data|bss|tdata|tbss|sdata|sbss|init_array|fini_array|preinit_array|ctors|dtors)([.$]|$)/ {
         print $2 " (size 0x" $3 ")"
     }' "$work/objdump" >"$work/sections"
# Windows keeps constants that hold addresses beside all others, and fixes them up all the same. Its
# .refptr cells are the compiler's own way to data of another object file, which might be a DLL's.
"$objdump" -r "$archive" >"$work/relocations" || fail "$objdump cannot read it"
awk '/^RELOCATION RECORDS FOR/ { section = $4 }
     section ~ /^\[\.rdata/ && section !~ /\$\.refptr\./ && $2 ~ /^IMAGE_REL_.*ADDR(32|64)$/ {
         print section " holds the address of " $3
     }' "$work/relocations" >>"$work/sections"
# The layout of the sections' listing is the tool's; one without code was not understood.
awk '$1 ~ /^[0-9]+$/ && $2 ~ /^\.text([.$]|$)/ { found = 1 } END { exit !found }' "$work/objdump" ||
    fail "$objdump lists no section of code"

status=0
complain() {
    if [ -s "$2" ]; then
        echo "check_symbols: $archive: $1:" >&2
        LC_ALL=C sort -u "$2" | sed 's/^/    /' >&2
        status=1
    fi
}
complain "calls beyond the promised ones" "$work/foreign"
complain "symbols of writable data" "$work/data"
complain "sections of data that is written or fixed up" "$work/sections"
exit $status
