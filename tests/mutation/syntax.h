// The little of libclang's interface that the mutator needs, as values.
#pragma once

#include <clang-c/Index.h>

#include <string>
#include <utility>
#include <vector>

namespace zrp_test::mutation {

/// The characters of a file that a piece of code consists of.
struct Range {
    CXFile file = nullptr;
    unsigned begin = 0;
    unsigned end = 0;
    bool isMacroArgument = false;
};

std::string take(CXString string);
Range rangeOf(CXCursor cursor);
std::vector<CXCursor> childrenOf(CXCursor cursor);

/// Without the conversions and parentheses around it.
CXCursor bare(CXCursor expression);

/// A declaration's name, behind that of the class it is a member of.
std::string nameOf(CXCursor declaration);

bool isPointer(CXType type);
bool isKnownNumber(CXType type);

/// A compiled source file.
class Unit {
  public:
    Unit(const std::string& path, const std::vector<std::string>& options);
    ~Unit();
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;

    CXCursor root() const { return clang_getTranslationUnitCursor(unit_); }
    CXFile file(const std::string& path) const { return clang_getFile(unit_, path.c_str()); }

    struct Error {
        std::string file;
        unsigned line;
        std::string text;
    };
    std::vector<Error> errors() const;

  private:
    CXIndex index_;
    CXTranslationUnit unit_ = nullptr;
};

}  // namespace zrp_test::mutation
