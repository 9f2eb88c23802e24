// A record of any message type, chosen at run time.
#pragma once

#include <gtest/gtest.h>
#include <stddef.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/support/message_types.h"

namespace zrp_test {

/// A constructed record of `type`; a union holds its member 0, the placeholder of every union.
class AnyMessage {
  public:
    explicit AnyMessage(const MessageType& type)
        : storage_(type.objectSize / sizeof(std::max_align_t) + 1) {
        EXPECT_LE(type.objectAlignment, alignof(std::max_align_t));
        EXPECT_EQ(type.construct(record(), 0), 0);
    }

    void* record() { return storage_.data(); }

  private:
    std::vector<std::max_align_t> storage_;
};

inline std::string messageTypeName(const testing::TestParamInfo<MessageType>& type) {
    return type.param.name;
}

/// How the tests name a type in their output.
inline void PrintTo(const MessageType& type, std::ostream* out) {
    *out << type.name;
}

}  // namespace zrp_test
