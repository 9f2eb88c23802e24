#include "tests/mutation/finder.h"

#include <algorithm>
#include <cctype>

#include "tests/mutation/collector.h"
#include "tests/mutation/operators.h"

namespace zrp_test::mutation {

namespace {

using Kind = CXCursorKind;

class Finder {
  public:
    Finder(CXFile file, const std::string& name, const std::string& text, unsigned number)
        : file_(file), text_(text), out_(name, number) {}

    Mutations found() const { return out_.found(); }

    /// Goes through what lies in `cursor`. `parents` are around it, the innermost last.
    void visit(CXCursor cursor) {
        for (const CXCursor child : childrenOf(cursor)) {
            if (clang_getCursorKind(cursor) == CXCursor_TranslationUnit && !isHere(child)) {
                continue;
            }
            visitOne(child);
        }
    }

  private:
    CXFile file_;
    const std::string& text_;
    Collector out_;
    std::vector<CXCursor> parents_;

    bool isHere(CXCursor cursor) const {
        const Range range = rangeOf(cursor);
        return range.file != nullptr && clang_File_isEqual(range.file, file_) != 0;
    }

    Kind parentKind(size_t level = 0) const {
        return level < parents_.size() ? clang_getCursorKind(parents_[parents_.size() - 1 - level])
                                       : CXCursor_TranslationUnit;
    }

    std::string textOf(unsigned begin, unsigned end) const {
        return text_.substr(begin, end - begin);
    }
    std::string textOf(CXCursor cursor) const {
        const Range range = rangeOf(cursor);
        return textOf(range.begin, range.end);
    }

    void visitOne(CXCursor cursor) {
        const Kind kind = clang_getCursorKind(cursor);
        if (kind == CXCursor_StaticAssert || clang_isAttribute(kind) != 0 ||
            kind == CXCursor_TemplateTypeParameter || kind == CXCursor_NonTypeTemplateParameter ||
            kind == CXCursor_TypeAliasDecl || kind == CXCursor_TypeAliasTemplateDecl) {
            return;
        }
        // The body of a function that a macro defines begins at no brace.
        if (kind == CXCursor_CompoundStmt &&
            (!isHere(cursor) || text_[rangeOf(cursor).begin] != '{')) {
            return;
        }
        const bool isNamed =
            kind == CXCursor_FunctionDecl || kind == CXCursor_CXXMethod ||
            kind == CXCursor_FunctionTemplate || kind == CXCursor_Constructor ||
            kind == CXCursor_Destructor || kind == CXCursor_ConversionFunction ||
            kind == CXCursor_ClassDecl || kind == CXCursor_StructDecl ||
            kind == CXCursor_ClassTemplate || kind == CXCursor_EnumDecl ||
            kind == CXCursor_ClassTemplatePartialSpecialization ||
            ((kind == CXCursor_VarDecl || kind == CXCursor_FieldDecl) && !isInFunction());
        if (isNamed) {
            out_.enter(nameOf(cursor));
        }
        if (isHere(cursor)) {
            consider(cursor, kind);
        }
        parents_.push_back(cursor);
        visit(cursor);
        parents_.pop_back();
        if (isNamed) {
            out_.leave();
        }
    }

    bool isInFunction() const {
        return std::any_of(parents_.begin(), parents_.end(), [](CXCursor parent) {
            return clang_getCursorKind(parent) == CXCursor_CompoundStmt;
        });
    }

    void consider(CXCursor cursor, Kind kind) {
        considerStatement(cursor, kind);  // around the expression that it consists of
        switch (kind) {
            case CXCursor_BinaryOperator:
            case CXCursor_CompoundAssignOperator:
                considerBinary(cursor);
                break;
            case CXCursor_UnaryOperator:
                considerUnary(cursor);
                break;
            case CXCursor_IntegerLiteral:
            case CXCursor_CharacterLiteral:
                considerConstant(cursor, kind);
                break;
            case CXCursor_CXXBoolLiteralExpr: {
                const Range range = rangeOf(cursor);
                const std::string literal = textOf(cursor);
                if (literal == "true" || literal == "false") {
                    const std::string call = "::zrp_mutant::negate" + out_.beginPlace();
                    out_.add("constant", range.begin, range.end,
                             literal == "true" ? "false" : "true");
                    out_.wrap(range, call, ")");
                }
                break;
            }
            case CXCursor_IfStmt:
            case CXCursor_WhileStmt:
            case CXCursor_DoStmt:
            case CXCursor_ForStmt:
            case CXCursor_ConditionalOperator:
                considerCondition(cursor, kind);
                break;
            default:
                break;
        }
    }

    void considerBinary(CXCursor cursor) {
        const std::vector<CXCursor> sides = childrenOf(cursor);
        if (sides.size() != 2) {
            return;
        }
        const Range whole = rangeOf(cursor);
        const Range left = rangeOf(sides[0]);
        const Range right = rangeOf(sides[1]);
        if (left.begin != whole.begin || right.end != whole.end || left.end >= right.begin) {
            return;  // in a macro
        }
        const std::string between = textOf(left.end, right.begin);
        const size_t first = between.find_first_not_of(" \n");
        const std::string spelling =
            between.substr(first, between.find_last_not_of(" \n") + 1 - first);
        const unsigned at = left.end + static_cast<unsigned>(first);
        const unsigned behind = at + static_cast<unsigned>(spelling.size());
        if (spelling == "&&" || spelling == "||") {
            const std::string flip = "::zrp_mutant::negate" + out_.beginPlace();
            out_.add("condition", at, behind, spelling == "&&" ? "||" : "&&");
            out_.wrap(whole, flip, ")");
            out_.wrap(left, flip, ")");
            out_.wrap(right, flip, ")");
            considerTruth(sides[0]);
            considerTruth(sides[1]);
            return;
        }
        const CXType leftType = clang_getCursorType(sides[0]);
        const CXType rightType = clang_getCursorType(sides[1]);
        const Kind rightKind = clang_getCursorKind(bare(sides[1]));
        const Sides types = isKnownNumber(leftType) && isKnownNumber(rightType) ? Sides::numbers
                            : rightKind == CXCursor_IntegerLiteral ||
                                    (isPointer(leftType) && isKnownNumber(rightType))
                                ? Sides::pointerAndNumber
                                : Sides::unknown;
        const OperatorMutations* const mutations = mutationsOf(spelling, types);
        if (mutations == nullptr) {
            return;
        }
        const std::string call = "::zrp_mutant::" + mutations->function + out_.beginPlace();
        for (const std::string& other : mutations->others) {
            out_.add("operator", at, behind, other);
        }
        if (mutations->isSwapped) {
            out_.add("swap", whole.begin, whole.end,
                     textOf(right.begin, right.end) + between + textOf(left.begin, left.end));
        }
        out_.wrap(whole, call, ")");
        out_.replace(at, behind, ",");
    }

    void considerUnary(CXCursor cursor) {
        const Range range = rangeOf(cursor);
        const std::vector<CXCursor> children = childrenOf(cursor);
        if (range.begin >= range.end || children.size() != 1) {
            return;
        }
        const std::string text = textOf(cursor);
        const Range inner = rangeOf(children[0]);
        const auto call = [&](const std::string& function) {
            return "::zrp_mutant::" + function + out_.placeCall();
        };
        (void)out_.beginPlace();
        if (text[0] == '!') {
            out_.add("condition", range.begin, range.begin + 1, "");
            out_.wrap(range, call("negate"), ")");
        } else if (text[0] == '~') {
            out_.add("operator", range.begin, range.begin + 1, "");
            out_.wrap(range, call("complement"), ")");
            out_.replace(range.begin, range.begin + 1, "");
        } else if (text[0] == '-' && inner.begin == range.begin + 1) {
            out_.add("operator", range.begin, range.begin + 1, "");
            out_.isNoCode();  // a constant
        } else if (const std::string step = text.substr(0, 2); step == "++" || step == "--") {
            out_.add("operator", range.begin, range.begin + 2, step == "++" ? "--" : "++");
            out_.wrap(range, call(step == "++" ? "increment" : "decrement"), ")");
            out_.replace(range.begin, range.begin + 2, "");
        } else if (const std::string last = textOf(inner.end, range.end);
                   inner.begin == range.begin && (last == "++" || last == "--")) {
            out_.add("operator", range.end - 2, range.end, last == "++" ? "--" : "++");
            out_.wrap(range, call(last == "++" ? "incrementBehind" : "decrementBehind"), ")");
            out_.replace(range.end - 2, range.end, "");
        }
    }

    void considerConstant(CXCursor cursor, Kind kind) {
        const Range range = rangeOf(cursor);
        if (range.isMacroArgument || range.begin >= range.end) {
            return;
        }
        const std::string literal = textOf(cursor);
        const bool isNumber = std::isdigit(static_cast<unsigned char>(literal[0])) != 0;
        if (kind == CXCursor_IntegerLiteral ? !isNumber : literal[0] != '\'') {
            return;
        }
        std::string before = "::zrp_mutant::constant" + out_.beginPlace();
        out_.add("constant", range.begin, range.end, "(" + literal + " + 1)");
        out_.add("constant", range.begin, range.end, "(" + literal + " - 1)");
        std::string behind = ")";
        // Braces let a constant become another type, but no call.
        if (parentKind() == CXCursor_InitListExpr) {
            before.replace(before.find("constant"), 8, "braced");
        } else if (parentKind() == CXCursor_UnexposedExpr) {
            const CXType type = clang_getCanonicalType(clang_getCursorType(parents_.back()));
            if (isKnownNumber(type) && type.kind != CXType_Enum) {
                const CXType plain = clang_getUnqualifiedType(type);
                before = "static_cast<" + take(clang_getTypeSpelling(plain)) + ">(" + before;
                behind += ")";
            }
        }
        out_.wrap(range, before, behind);
    }

    /// A condition that no operator in it stands for is negated.
    void considerTruth(CXCursor condition) {
        const CXCursor inner = bare(condition);
        const Kind kind = clang_getCursorKind(inner);
        const Range range = rangeOf(condition);
        const bool isPlain = kind == CXCursor_CallExpr || kind == CXCursor_DeclRefExpr ||
                             kind == CXCursor_MemberRefExpr;
        if (!isPlain || range.begin >= range.end || !isHere(condition)) {
            return;
        }
        const std::string call = "::zrp_mutant::negate" + out_.beginPlace();
        out_.add("condition", range.begin, range.end, "!(" + textOf(condition) + ")");
        out_.wrap(range, call, ")");
    }

    void considerCondition(CXCursor cursor, Kind kind) {
        const std::vector<CXCursor> children = childrenOf(cursor);
        if (kind == CXCursor_DoStmt) {
            considerTruth(children.back());
            return;
        }
        for (const CXCursor child : children) {
            if (clang_getCursorKind(child) == CXCursor_VarDecl) {
                return;  // declared in the condition
            }
            if (clang_isExpression(clang_getCursorKind(child)) != 0) {
                considerTruth(child);
                return;
            }
            if (kind == CXCursor_ForStmt) {
                return;  // what is compared there is an operator
            }
        }
    }

    void considerStatement(CXCursor cursor, Kind kind) {
        if (parentKind() != CXCursor_CompoundStmt) {
            return;
        }
        const Range range = rangeOf(cursor);
        const bool isExpression = clang_isExpression(kind) != 0;
        if (kind == CXCursor_CStyleCastExpr &&
            clang_getCursorKind(bare(childrenOf(cursor).back())) == CXCursor_DeclRefExpr) {
            return;  // `(void)name;` does nothing
        }
        const bool isEarlyReturn =
            kind == CXCursor_ReturnStmt && parentKind(1) == CXCursor_IfStmt && !isChoice(1);
        const bool isJump = kind == CXCursor_BreakStmt || kind == CXCursor_ContinueStmt;
        if (!isExpression && !isEarlyReturn && !isJump) {
            return;
        }
        const size_t semicolon = text_.find(';', range.end);
        if (range.begin >= range.end || semicolon == std::string::npos ||
            text_.find_first_not_of(" \n", range.end) != semicolon) {
            return;
        }
        Range whole = range;
        whole.end = static_cast<unsigned>(semicolon) + 1;
        const std::string call = "if (!::zrp_mutant::isAwake" + out_.beginPlace() + ")) { ";
        out_.add("statement", whole.begin, whole.end, "");
        out_.wrap(whole, call, " }");
    }

    /// Whether the parent at this level is an `if constexpr`, or has an `else`: then nothing need
    /// follow its parts.
    bool isChoice(size_t level) const {
        const CXCursor statement = parents_[parents_.size() - 1 - level];
        const std::vector<CXCursor> children = childrenOf(statement);
        const bool isLast = clang_equalCursors(children.back(), parents_.back()) != 0;
        return !isLast || textOf(statement).rfind("if constexpr", 0) == 0;
    }
};

}  // namespace

Mutations findMutants(const Unit& unit, CXFile file, const std::string& name,
                      const std::string& text, unsigned firstNumber) {
    Finder finder(file, name, text, firstNumber);
    finder.visit(unit.root());
    return finder.found();
}

}  // namespace zrp_test::mutation
