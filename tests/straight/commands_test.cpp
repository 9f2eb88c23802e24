// The command of a frame as encoders write it is told straight along. A frame that is not taken for
// one is read from tag to tag, with the same answer, only slower.
#include <gtest/gtest.h>

#include "protocol/codec/commands.h"
#include "tests/differential/subject.h"

namespace zrp_test {

using namespace quorva_zrp;
using codec::commands::Body;

namespace {

struct Form {
    const char* name;
    Body body;
    size_t baseAt;  ///< where the fields of the base header begin
    size_t commandOffset;
};

const Form forms[] = {
    {"TZRPHead", Body::none, 10, offsetof(TZRPHead, stBase.wCommand)},
    {"TZRPFrame", Body::rawBytes, 15, offsetof(TZRPFrame, stHead.stBase.wCommand)},
    {"TZRPInFrame", Body::member, 15, offsetof(TZRPInFrame, stHead.stBase.wCommand)},
};

std::ostream& operator<<(std::ostream& out, const Form& form) {
    return out << form.name;
}

/// Bytes that the fields of a base header take at most. Where less input is left, integers are read
/// with care, from tag to tag.
constexpr size_t largestBase = 44;
constexpr size_t largestFixedBase = 36;

Bytes encoded(const char* type, const Bytes& record, bool varint) {
    Bytes bytes(TZRPInFrame_MAX_VARINT + record.size());
    size_t used = 0;
    EXPECT_EQ(0,
              messageType(type).pack(record.data(), 0, bytes.data(), bytes.size(), &used, varint));
    bytes.resize(used);
    return bytes;
}

class StraightCommands : public testing::TestWithParam<std::tuple<Form, bool>> {
  protected:
    const Form& form() const { return std::get<0>(GetParam()); }
    bool varint() const { return std::get<1>(GetParam()); }

    TypePair pair() const {
        return {&messageType(form().name), &zrp_oracle::typeNamed(form().name)};
    }
};

}  // namespace

TEST_P(StraightCommands, AreToldWithoutReadingFromTagToTag) {
    Random random(22);
    const size_t variants = variantCount(*pair().oracle);
    const size_t needed = varint() ? largestBase : largestFixedBase;
    size_t told = 0;
    for (size_t i = 0; i < 60 * variants; ++i) {
        const Subject subject = randomSubject(pair(), random, i % variants, Soundness::sound);
        uint16_t command = 0;
        memcpy(&command, subject.record.data() + form().commandOffset, sizeof(command));
        const Bytes bytes = encoded(form().name, subject.record, varint());
        if (command == ZRP_CMD_NULL || bytes.size() - form().baseAt < needed) {
            continue;
        }
        ++told;
        uint32_t stated = 0;
        ASSERT_TRUE(codec::commands::agree(bytes.data(), bytes.size(), form().body, stated))
            << toHex(bytes);
        ASSERT_EQ(command, stated) << toHex(bytes);
    }
    EXPECT_GT(told, 10 * variants);
}

INSTANTIATE_TEST_SUITE_P(Forms, StraightCommands,
                         testing::Combine(testing::ValuesIn(forms), testing::Bool()),
                         [](const auto& instance) {
                             return std::string(std::get<0>(instance.param).name) +
                                    (std::get<1>(instance.param) ? "Varint" : "Fixed");
                         });

TEST(StraightCommandsOfAFrame, AreToldWithJustTheInputOfTheLargestBaseHeader) {
    const Form& form = forms[1];
    size_t told = 0;
    for (uint32_t bodySize = 1; bodySize < 50; ++bodySize) {
        Bytes record(sizeof(TZRPFrame) + bodySize);
        const uint16_t command = ZRP_CMD_CSTOP;
        memcpy(record.data() + form.commandOffset, &command, sizeof(command));
        memcpy(record.data() + offsetof(TZRPFrame, stHead.stBase.dwBodyLen), &bodySize,
               sizeof(bodySize));
        const Bytes bytes = encoded(form.name, record, true);
        if (bytes.size() - form.baseAt == largestBase) {
            ++told;
            uint32_t stated = 0;
            EXPECT_TRUE(codec::commands::agree(bytes.data(), bytes.size(), form.body, stated));
            EXPECT_EQ(command, stated);
        }
    }
    EXPECT_EQ(1U, told);
}

}  // namespace zrp_test
