#include "tests/mutation/operators.h"

namespace zrp_test::mutation {

const OperatorMutations* mutationsOf(const std::string& spelling, Sides sides) {
    static const std::vector<OperatorMutations> table = {
        {"<", "less", {"<=", ">="}, true},
        {"<=", "lessOrEqual", {"<", ">"}, true},
        {">", "greater", {">=", "<="}, true},
        {">=", "greaterOrEqual", {">", "<"}, true},
        {"==", "equal", {"!="}},
        {"!=", "unequal", {"=="}},
        {"+", "plus", {"-"}},
        {"-", "minusSwapped", {"+"}, true},
        {"*", "times", {"+"}},
        {"/", "divided", {"*"}, true},
        {"%", "modulo", {"/"}, true},
        {"&", "bitAnd", {"|"}},
        {"|", "bitOr", {"&"}},
        {"^", "bitXor", {"|"}},
        {"<<", "shiftLeft", {">>"}},
        {">>", "shiftRight", {"<<"}},
        {"+=", "addTo", {"-="}, false, true},
        {"-=", "takeFrom", {"+="}, false, true},
        {"|=", "orInto", {"&="}, false, true},
        {"&=", "andInto", {"|="}, false, true},
        {"<<=", "shiftLeftInto", {">>="}, false, true},
        {">>=", "shiftRightInto", {"<<="}, false, true},
    };
    static const OperatorMutations fromPointer = {"-", "minus", {"+"}};
    static const OperatorMutations ofUnknown = {"-", "difference", {}, true};
    if (spelling == "-" && sides != Sides::numbers) {
        return sides == Sides::pointerAndNumber ? &fromPointer : &ofUnknown;
    }
    for (const OperatorMutations& one : table) {
        if (one.spelling == spelling) {
            return &one;
        }
    }
    return nullptr;
}

}  // namespace zrp_test::mutation
