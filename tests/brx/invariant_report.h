// What a program prints that ends because a buffer's position lies past its length.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <string>

namespace zrp_test {

/// A regular expression for the report: path of the buffers' header, line, operation, expression.
/// Both forms that the platforms print are taken: Assertion `...' and assertion "..."; Windows has
/// one of its own, without the operation.
inline std::string invariantReport(const char* operation, int line) {
    const std::string path = R"(\.\./\.\./\.\./\.\./Common/Source/Core/BRX/BrxBuf)";
#ifdef _WIN32
    (void)operation;
    return "Assertion failed: position <= length, file " + path + ", line " + std::to_string(line);
#else
    return path + ":" + std::to_string(line) + ": " + operation +
           ": .ssertion .position <= length. failed";
#endif
}

/// How a program ends that aborts.
#ifdef _WIN32
inline testing::ExitedWithCode aborted() {
    return testing::ExitedWithCode(3);
}
#else
inline testing::KilledBySignal aborted() {
    return testing::KilledBySignal(SIGABRT);
}
#endif

}  // namespace zrp_test

/// Succeeds when `statement` ends the program through the assertion handler, which aborts, with the
/// report of this operation and line.
#define EXPECT_BROKEN_INVARIANT(statement, operation, line) \
    EXPECT_EXIT(statement, ::zrp_test::aborted(),           \
                testing::ContainsRegex(::zrp_test::invariantReport(operation, line)))
