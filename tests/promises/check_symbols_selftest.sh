#!/bin/sh
# check_symbols_selftest.sh CXX [NM [AR]]
#
# Shows that check_symbols.sh can fail: builds small archives that each break one promise, and one
# that keeps them all.
set -eu

if [ $# -lt 1 ] || [ $# -gt 3 ]; then
    echo "usage: check_symbols_selftest.sh CXX [NM [AR]]" >&2
    exit 2
fi
cxx=$1
nm=${2:-nm}
ar=${3:-ar}
check=$(dirname "$0")/check_symbols.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

complain() {
    echo "check_symbols_selftest: $1" >&2
    failures=$((failures + 1))
}

# compiled NAME: an object file of the C++ source on standard input.
compiled() {
    cat >"$work/$1.cpp"
    "$cxx" -std=c++20 -O2 -fPIC -fno-stack-protector -c "$work/$1.cpp" -o "$work/$1.o"
}

# archive NAME: an archive of the C++ source on standard input.
archive() {
    compiled "$1"
    "$ar" rc "$work/$1.a" "$work/$1.o"
}

# refused NAME TEXT: the archive is refused, with a message that holds TEXT.
refused() {
    if sh "$check" "$work/$1.a" "$nm" >"$work/out" 2>&1; then
        complain "$1 passed"
    elif ! grep -q -e "$2" "$work/out"; then
        complain "$1 was refused without naming $2:"
        cat "$work/out" >&2
    fi
}

accepted() {
    if ! sh "$check" "$work/$1.a" "$nm" >"$work/out" 2>&1; then
        complain "$1 was refused:"
        cat "$work/out" >&2
    fi
}

# --- Promises kept

compiled caller <<'SOURCE'
#include <assert.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
namespace Quorva {
class BrxWriteBuf;
class BrxBufUtil {
  public:
    static int printVariable(BrxWriteBuf&, int, char, const char*, const char*, ...);
    static int printVariable(BrxWriteBuf&, int, char, const char*, bool);
    static int printArray(BrxWriteBuf&, int, char, const char*, long long);
    static int printString(BrxWriteBuf&, int, char, const char*, const char*);
};
}  // namespace Quorva
static const int table[] = {1, 2, 3, 5, 8, 13, 21};
int fromOtherMember(int index);
inline int shared(int index) { return table[index & 3]; }
int use(Quorva::BrxWriteBuf& buf, char* to, const char* from, size_t count, va_list arguments) {
    assert(to != from);
    memmove(to, from, count);
    memcpy(to + count, from, count);
    memset(to, 0, count);
    int result = memcmp(to, from, count) + static_cast<int>(strnlen(from, count));
    strncpy(to, from, count);
    result += vsnprintf(to, count, from, arguments) + fromOtherMember(result) + shared(result);
    result += Quorva::BrxBufUtil::printVariable(buf, 0, ' ', from, from, result);
    result += Quorva::BrxBufUtil::printVariable(buf, 0, ' ', from, true);
    result += Quorva::BrxBufUtil::printArray(buf, 0, ' ', from, 1);
    result += Quorva::BrxBufUtil::printString(buf, 0, ' ', from, to);
    delete[] to;
    return result;
}
SOURCE
compiled called <<'SOURCE'
int fromOtherMember(int index) { return index + 1; }
SOURCE
"$ar" rc "$work/whole.a" "$work/caller.o" "$work/called.o"
accepted whole
# Without the member that defines what the other one calls, that call is foreign.
"$ar" rc "$work/half.a" "$work/caller.o"
refused half fromOtherMember

# --- Calls

archive allocates <<'SOURCE'
#include <stdlib.h>
void* call(size_t size) { return malloc(size); }
SOURCE
refused allocates malloc

archive creates <<'SOURCE'
char* call(unsigned size) { return new char[size]; }
SOURCE
refused creates _Zna

archive destroys <<'SOURCE'
void call(int* one) { delete one; }
SOURCE
refused destroys _ZdlPv

archive throws <<'SOURCE'
void call() { throw 1; }
SOURCE
refused throws __cxa_throw

archive unwinds <<'SOURCE'
struct Guard { ~Guard(); };
void call(void (*next)()) { Guard guard; next(); }
SOURCE
refused unwinds __gxx_personality_

archive prints <<'SOURCE'
#include <stdio.h>
void call(const char* text) { printf("%s and more\n", text); }
SOURCE
refused prints printf

archive reads_the_environment <<'SOURCE'
#include <stdlib.h>
const char* call() { return getenv("HOME"); }
SOURCE
refused reads_the_environment getenv

archive ends_the_program <<'SOURCE'
#include <stdlib.h>
void call() { abort(); }
SOURCE
refused ends_the_program abort

archive locks <<'SOURCE'
#include <mutex>
void call(std::mutex& mutex) { mutex.lock(); }
SOURCE
refused locks pthread_mutex_lock

archive asks_weakly <<'SOURCE'
extern "C" void hook() __attribute__((weak));
void call() { if (hook) { hook(); } }
SOURCE
refused asks_weakly hook

archive prints_otherwise <<'SOURCE'
namespace Quorva {
struct BrxBufUtil { static int printVariable(int value); };
}  // namespace Quorva
int call() { return Quorva::BrxBufUtil::printVariable(1); }
SOURCE
refused prints_otherwise printVariable

# --- Data

archive initialised <<'SOURCE'
int counter = 1;
int call() { return ++counter; }
SOURCE
refused initialised counter

archive zeroed <<'SOURCE'
int counter;
int call() { return ++counter; }
SOURCE
refused zeroed counter

archive hidden <<'SOURCE'
static int counter = 1;
int call() { return ++counter; }
SOURCE
refused hidden counter

archive local <<'SOURCE'
int call() { static int counter = 0; return ++counter; }
SOURCE
refused local counter

archive shared <<'SOURCE'
inline int call() { static int counter = 0; return ++counter; }
int (*use())() { return call; }
SOURCE
refused shared counter

archive common <<'SOURCE'
extern "C" int counter;
asm(".comm counter, 4, 4");
int call() { return ++counter; }
SOURCE
refused common counter

archive per_thread <<'SOURCE'
thread_local int counter = 1;
int call() { return ++counter; }
SOURCE
refused per_thread counter

archive runs_before_main <<'SOURCE'
__attribute__((constructor)) static void call() { asm volatile(""); }
SOURCE
refused runs_before_main 'init_array\|\.ctors'

archive holds_addresses <<'SOURCE'
extern const char* const names[4];
const char* const names[] = {"one", "two", "three", "four"};
const char* call(int index) { return names[index & 3]; }
SOURCE
refused holds_addresses 'data.rel\|rdata'

archive virtual_functions <<'SOURCE'
struct Base { virtual int call(); };
int Base::call() { return 1; }
SOURCE
refused virtual_functions 'data.rel\|rdata'

# --- Archives that cannot be judged

refused missing "no such file"

"$ar" rc "$work/empty.a"
refused empty "nothing to check"

printf 'not an archive\n' >"$work/text.a"
refused text "cannot read it\|nothing to check"

if [ "$failures" -ne 0 ]; then
    echo "check_symbols_selftest: $failures failures" >&2
    exit 1
fi
echo "check_symbols_selftest: passed with $cxx"
