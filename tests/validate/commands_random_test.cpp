// The commands of encoded frames: sound, cut, changed and invented bytes, against a slow reading of
// the same.
#include <gtest/gtest.h>

#include <memory>

#include "tests/differential/effort.h"
#include "tests/differential/subject.h"
#include "tests/differential/wire_generator.h"
#include "tests/validate/commands_reference.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

struct Form {
    const char* name;
    const zrp_oracle::Type& type;
    FrameBody body;
    int (*commandsOf)(const char* buffer, size_t size, ZRPCommands* commands);
};

const Form forms[] = {
    {"TZRPHead", zrp_oracle::typeTZRPHead, FrameBody::none, commandsOfHead},
    {"TZRPFrame", zrp_oracle::typeTZRPFrame, FrameBody::rawBytes, commandsOfFrame},
    {"TZRPInFrame", zrp_oracle::typeTZRPInFrame, FrameBody::member, commandsOfInFrame},
};

std::ostream& operator<<(std::ostream& out, const Form& form) {
    return out << form.name;
}

/// The result and what was stored, from bytes that end where their memory ends.
struct Answer {
    int result;
    ZRPCommands commands;
};

Answer answerOf(const Form& form, const Bytes& bytes) {
    const std::unique_ptr<char[]> exact(new char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    Answer answer{};
    answer.result = form.commandsOf(exact.get(), bytes.size(), &answer.commands);
    EXPECT_EQ(answer.result, form.commandsOf(exact.get(), bytes.size(), nullptr));
    return answer;
}

class FrameCommands : public testing::TestWithParam<Form> {
  protected:
    TypePair pair() const { return {&messageType(GetParam().name), &GetParam().type}; }

    Bytes encoded(const Subject& subject, bool varint) const {
        Bytes bytes(TZRPInFrame_MAX_VARINT + subject.record.size());
        size_t used = 0;
        EXPECT_EQ(0, pair().library->pack(subject.record.data(), 0, bytes.data(), bytes.size(),
                                          &used, varint));
        bytes.resize(used);
        return bytes;
    }

    Bytes randomEncoding(Random& random, bool varint) const {
        return encoded(randomSubject(pair(), random, random.below(variantCount(GetParam().type)),
                                     Soundness::sound),
                       varint);
    }

    void expectAsStated(const Bytes& bytes) {
        const Answer answer = answerOf(GetParam(), bytes);
        const StatedCommands stated = statedCommands(bytes, GetParam().body);
        if (!stated.isReadable) {
            ++unreadable_;
            return;
        }
        const int expected = expectedDifferences(stated.commands);
        ++(expected == 0 ? agreeing_ : differing_);
        ASSERT_EQ(expected, answer.result) << toHex(bytes);
        ASSERT_EQ(stated.commands.hasBase, answer.commands.hasBase) << toHex(bytes);
        ASSERT_EQ(stated.commands.hasExtension, answer.commands.hasExtension) << toHex(bytes);
        ASSERT_EQ(stated.commands.hasBody, answer.commands.hasBody) << toHex(bytes);
        ASSERT_EQ(stated.commands.base, answer.commands.base) << toHex(bytes);
        ASSERT_EQ(stated.commands.extension, answer.commands.extension) << toHex(bytes);
        ASSERT_EQ(stated.commands.body, answer.commands.body) << toHex(bytes);
    }

    size_t agreeing_ = 0;
    size_t differing_ = 0;
    size_t unreadable_ = 0;
};

}  // namespace

TEST_P(FrameCommands, AreOneInWhatIsEncodedHere) {
    for (size_t seed = 0; seed < 200 * differentialRounds(); ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        ASSERT_NO_FATAL_FAILURE(expectAsStated(randomEncoding(random, seed % 2 == 0)));
    }
    EXPECT_EQ(0u, differing_ + unreadable_);
}

TEST_P(FrameCommands, OfCutBytesAreNotMadeUp) {
    for (size_t seed = 0; seed < 6 * differentialRounds(); ++seed) {
        Random random(seed);
        const Bytes bytes = randomEncoding(random, seed % 2 == 0);
        for (size_t size = 0; size < bytes.size(); ++size) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " size " << size);
            Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            ASSERT_EQ(-2, answerOf(GetParam(), cut).result);
            if (size >= 5) {
                putLength(cut, 1, size);
                ASSERT_NO_FATAL_FAILURE(expectAsStated(cut));
            }
        }
    }
}

TEST_P(FrameCommands, OfWildBytesAreThoseThatADecoderMeets) {
    const size_t rounds = 8000 * differentialRounds();
    for (size_t seed = 0; seed < rounds; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Bytes bytes = random.oneIn(2)
                          ? randomEncoding(random, seed % 2 == 0)
                          : WireGenerator(random, seed % 2 == 0).message(GetParam().type);
        if (random.oneIn(2)) {
            bytes = mutated(bytes, random);
        }
        if (bytes.size() >= 5 && random.oneIn(2)) {
            putLength(bytes, 1, bytes.size());
        }
        ASSERT_NO_FATAL_FAILURE(expectAsStated(random.oneIn(4) ? withTail(bytes, random) : bytes));
    }
    EXPECT_GE(agreeing_, rounds / 50);
    EXPECT_GE(differing_, rounds / 100);
    EXPECT_GE(unreadable_, rounds / 20);
}

TEST_P(FrameCommands, OfNoiseAreReadWithinBounds) {
    for (size_t seed = 0; seed < 3000 * differentialRounds(); ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Bytes bytes(random.below(80));
        random.fill(bytes);
        if (bytes.size() >= 5 && !random.oneIn(4)) {
            bytes[0] = seed % 2 == 0 ? '\xAA' : '\x99';
            putLength(bytes, 1, bytes.size());
        }
        ASSERT_NO_FATAL_FAILURE(expectAsStated(bytes));
    }
}

INSTANTIATE_TEST_SUITE_P(Of, FrameCommands, testing::ValuesIn(forms),
                         testing::PrintToStringParamName());

// What agreement is for: the members that the command names are those that arrived.
TEST(FrameCommandsOfDecodedFrames, AreTheCommandThatDecodingLeaves) {
    const Form& form = forms[2];
    size_t decoded = 0;
    for (size_t seed = 0; seed < 10000 * differentialRounds(); ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Bytes bytes = WireGenerator(random, seed % 2 == 0).message(form.type);
        TZRPInFrame frame = TZRPInFrame();
        if (frame.unpackTLV(bytes.data(), bytes.size(), nullptr) != 0) {
            continue;
        }
        ++decoded;
        const Answer answer = answerOf(form, bytes);
        ASSERT_GE(answer.result, 0);
        if (answer.result != 0) {
            continue;
        }
        const ZRPCommands& commands = answer.commands;
        const uint16_t left = frame.stHead.stBase.wCommand;
        ASSERT_TRUE(!commands.hasBase || commands.base == left);
        ASSERT_TRUE(!commands.hasExtension || commands.extension == left);
        ASSERT_TRUE(!commands.hasBody || commands.body == left);
        ASSERT_TRUE(commands.hasBody == frame.has_Body() || commands.body == left);
    }
    EXPECT_GE(decoded, 500u);
}

}  // namespace zrp_test
