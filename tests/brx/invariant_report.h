// What a program prints that ends because a buffer's position lies past its length.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <string>

namespace zrp_test {

/// A regular expression for the report: path of the buffers' header, line, operation, expression.
/// Both forms that the platforms print are taken: Assertion `...' and assertion "...". Dots stand
/// for what differs, since GoogleTest knows little more of regular expressions on Windows.
inline std::string invariantReport(const char* operation, int line) {
    return R"(\.\./\.\./\.\./\.\./Common/Source/Core/BRX/BrxBuf:)" + std::to_string(line) + ": " +
           operation + ": .ssertion .position <= length. failed";
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
