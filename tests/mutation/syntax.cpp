#include "tests/mutation/syntax.h"

#include <stdexcept>

namespace zrp_test::mutation {

std::string take(CXString string) {
    const char* const text = clang_getCString(string);
    std::string result = text != nullptr ? text : "";
    clang_disposeString(string);
    return result;
}

Range rangeOf(CXCursor cursor) {
    const CXSourceRange extent = clang_getCursorExtent(cursor);
    Range range;
    CXFile endFile = nullptr;
    CXFile expandedFile = nullptr;
    unsigned expandedBegin = 0;
    const CXSourceLocation start = clang_getRangeStart(extent);
    clang_getFileLocation(start, &range.file, nullptr, nullptr, &range.begin);
    clang_getFileLocation(clang_getRangeEnd(extent), &endFile, nullptr, nullptr, &range.end);
    clang_getExpansionLocation(start, &expandedFile, nullptr, nullptr, &expandedBegin);
    range.isMacroArgument = expandedBegin != range.begin;
    if (range.file == nullptr || endFile == nullptr || !clang_File_isEqual(range.file, endFile)) {
        range.file = nullptr;
    }
    return range;
}

std::vector<CXCursor> childrenOf(CXCursor cursor) {
    std::vector<CXCursor> children;
    clang_visitChildren(
        cursor,
        [](CXCursor child, CXCursor, CXClientData data) {
            static_cast<std::vector<CXCursor>*>(data)->push_back(child);
            return CXChildVisit_Continue;
        },
        &children);
    return children;
}

CXCursor bare(CXCursor expression) {
    const CXCursorKind kind = clang_getCursorKind(expression);
    if (kind == CXCursor_UnexposedExpr || kind == CXCursor_ParenExpr) {
        const std::vector<CXCursor> children = childrenOf(expression);
        if (children.size() == 1) {
            return bare(children.front());
        }
    }
    return expression;
}

std::string nameOf(CXCursor declaration) {
    const std::string name = take(clang_getCursorSpelling(declaration));
    const CXCursor holder = clang_getCursorSemanticParent(declaration);
    const bool isMember = clang_isDeclaration(clang_getCursorKind(holder)) != 0 &&
                          clang_getCursorKind(holder) != CXCursor_Namespace &&
                          clang_getCursorKind(holder) != CXCursor_LinkageSpec;
    std::string of = isMember ? take(clang_getCursorSpelling(holder)) : "";
    return of.empty() ? name : of + "::" + name;
}

bool isPointer(CXType type) {
    const CXTypeKind kind = clang_getCanonicalType(type).kind;
    return kind == CXType_Pointer || kind == CXType_ConstantArray;
}

bool isKnownNumber(CXType type) {
    const CXTypeKind kind = clang_getCanonicalType(type).kind;
    return (kind >= CXType_Bool && kind <= CXType_Int128) || kind == CXType_Enum;
}

Unit::Unit(const std::string& path, const std::vector<std::string>& options)
    : index_(clang_createIndex(0, 0)) {
    std::vector<const char*> arguments;
    for (const std::string& option : options) {
        arguments.push_back(option.c_str());
    }
    const CXErrorCode code =
        clang_parseTranslationUnit2(index_, path.c_str(), arguments.data(),
                                    static_cast<int>(arguments.size()), nullptr, 0, 0, &unit_);
    if (code != CXError_Success) {
        clang_disposeIndex(index_);
        throw std::runtime_error("libclang cannot read " + path);
    }
}

Unit::~Unit() {
    clang_disposeTranslationUnit(unit_);
    clang_disposeIndex(index_);
}

std::vector<Unit::Error> Unit::errors() const {
    std::vector<Error> errors;
    for (unsigned i = 0; i < clang_getNumDiagnostics(unit_); ++i) {
        const CXDiagnostic diagnostic = clang_getDiagnostic(unit_, i);
        if (clang_getDiagnosticSeverity(diagnostic) >= CXDiagnostic_Error) {
            CXFile file = nullptr;
            unsigned line = 0;
            clang_getFileLocation(clang_getDiagnosticLocation(diagnostic), &file, &line, nullptr,
                                  nullptr);
            errors.push_back({take(clang_getFileName(file)), line,
                              take(clang_getDiagnosticSpelling(diagnostic))});
        }
        clang_disposeDiagnostic(diagnostic);
    }
    return errors;
}

}  // namespace zrp_test::mutation
