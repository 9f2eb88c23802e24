#include "tests/validate/validators.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "protocol/quorva_zrp_validate.h"
#include "tests/support/every_type.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

struct Validator {
    const char* name;
    Validate validate;
};

template <class T>
int validateStructure(const void* object, long long, char* path, size_t pathSize) {
    return validate(*static_cast<const T*>(object), path, pathSize);
}

template <class U>
int validateUnion(const void* object, long long selector, char* path, size_t pathSize) {
    return validate(*static_cast<const U*>(object), selector, path, pathSize);
}

#define STRUCTURE(Type) \
    { #Type, validateStructure < Type> }
#define UNION(Type) \
    { #Type, validateUnion < Type> }

constexpr Validator validators[] = {
    ZRP_EVERY_TYPE(STRUCTURE, UNION),
};

#undef STRUCTURE
#undef UNION

}  // namespace

Validate validatorOf(const char* name) {
    for (const Validator& one : validators) {
        if (strcmp(one.name, name) == 0) {
            return one.validate;
        }
    }
    fprintf(stderr, "nothing validates %s\n", name);
    abort();
}

}  // namespace zrp_test
