// What an encoder writes is read by prediction alone. A field that prediction misses is read all
// the same, only slower, so that nothing else can tell.
#include <gtest/gtest.h>

#include "protocol/codec/decode.h"
#include "protocol/codec/field_data.h"
#include "tests/differential/subject.h"
#include "tests/oracle/record.h"

namespace zrp_test {

using namespace quorva_zrp;
using namespace quorva_zrp::codec;

namespace {

struct Outcome {
    int result;
    size_t taken;
    bool isSurprising;
    uint32_t seen;
};

template <class Record, bool Varint>
Outcome predictIn(char* record, const Bytes& fields) {
    const char* const from = fields.data();
    const char* const until = from + fields.size();
    const Input input(from, fields.size(), until, Varint);
    PredictingSource<Varint> source(input, from, until);
    uint32_t seen = 0;
    const int result = predictRecord<Record>(record, source, until, seen);
    return {result, input.offsetOf(source.at), input.isSurprising, seen};
}

template <class Record>
Outcome predict(char* record, const Bytes& fields, bool varint) {
    return varint ? predictIn<Record, true>(record, fields)
                  : predictIn<Record, false>(record, fields);
}

/// A structure that gets straight-line code.
struct Straight {
    const char* name;
    Outcome (*predict)(char* record, const Bytes& fields, bool varint);
};

template <class Record>
Straight straightOf(const char* name) {
    return {name, predict<Record>};
}

#define ZRP_STRAIGHT(Type) straightOf<Type>(#Type)

const Straight straightTypes[] = {
    ZRP_STRAIGHT(TZRPBase),        ZRP_STRAIGHT(TVESKRawDHReq),
    ZRP_STRAIGHT(TVESKAccount),    ZRP_STRAIGHT(O2AuthData),
    ZRP_STRAIGHT(TZRPAuthReqBody), ZRP_STRAIGHT(TZRPAuthRspBody),
    ZRP_STRAIGHT(TZRPSynHead),     ZRP_STRAIGHT(TZRPAuthRefreshNotifyBody),
    ZRP_STRAIGHT(TZRPDataHead),    ZRP_STRAIGHT(SpecifyZoneRouteInfo),
    ZRP_STRAIGHT(TZRPHead),        ZRP_STRAIGHT(SpecifyServerRouteInfo),
    ZRP_STRAIGHT(TZRPFrame),       ZRP_STRAIGHT(TZRPInFrame),
};

std::ostream& operator<<(std::ostream& out, const Straight& straight) {
    return out << straight.name;
}

/// Varints near the end of a message are left to the loop over all fields where the message ends in
/// a byte that might be part of one.
bool mightEndInAVarint(const Bytes& fields) {
    return static_cast<uint8_t>(fields.back()) >= 0x80;
}

class Prediction : public testing::TestWithParam<std::tuple<Straight, bool>> {
  protected:
    const Straight& straight() const { return std::get<0>(GetParam()); }
    bool varint() const { return std::get<1>(GetParam()); }
    TypePair pair() const {
        return {&messageType(straight().name), &zrp_oracle::typeNamed(straight().name)};
    }

    Bytes fieldsOf(const Subject& subject) const {
        Bytes bytes(TZRPInFrame_MAX_VARINT + subject.record.size());
        Quorva::BrxWriteBuf buf(bytes.data(), bytes.size());
        EXPECT_EQ(0, pair().library->packFields(subject.record.data(), 0, buf, varint()));
        bytes.resize(buf.getUsedSize());
        return bytes;
    }

    Bytes decoded(Bytes target, const Bytes& fields) const {
        Quorva::BrxReadBuf buf(fields.data(), fields.size());
        EXPECT_EQ(
            0, pair().library->unpackFields(target.data(), nullptr, buf, fields.size(), varint()));
        return target;
    }

    /// A record, of a frame one without a body, which is not predicted.
    Subject subjectWithoutBody(Random& random, size_t variant) const {
        Subject subject = randomSubject(pair(), random, variant, Soundness::sound);
        const zrp_oracle::Field& last = pair().oracle->fields.back();
        if (last.kind == zrp_oracle::Kind::bytes && last.size == 0) {
            zrp_oracle::setValueAt(subject.record.data(), last.governor, 0);
        }
        return subject;
    }
};

}  // namespace

TEST_P(Prediction, TakesAllThatAnEncoderWrites) {
    Random random(20);
    const size_t variants = variantCount(*pair().oracle);
    size_t sure = 0;
    for (size_t i = 0; i < 60 * variants; ++i) {
        const Subject subject = subjectWithoutBody(random, i % variants);
        const Bytes fields = fieldsOf(subject);
        Bytes record(recordSize(pair()), '\0');
        const Bytes expected = decoded(record, fields);
        if (varint() && mightEndInAVarint(fields)) {
            continue;
        }
        ++sure;
        const Outcome outcome = straight().predict(record.data(), fields, varint());
        ASSERT_EQ(0, outcome.result) << toHex(fields);
        ASSERT_EQ(fields.size(), outcome.taken) << toHex(fields);
        ASSERT_FALSE(outcome.isSurprising) << toHex(fields);
        ASSERT_EQ(toHex(expected), toHex(record)) << toHex(fields);
    }
    EXPECT_GT(sure, 20 * variants);
}

INSTANTIATE_TEST_SUITE_P(Types, Prediction,
                         testing::Combine(testing::ValuesIn(straightTypes), testing::Bool()),
                         [](const auto& instance) {
                             return std::string(std::get<0>(instance.param).name) +
                                    (std::get<1>(instance.param) ? "Varint" : "Fixed");
                         });

// What is in front of the bytes of a body; these are never copied into the record.
TEST(PredictionOfAFrame, TakesTheHeadInFrontOfABody) {
    for (const bool varint : {true, false}) {
        TZRPFrame frame{};
        frame.stHead.stBase.wMagic = 7;
        Bytes fields(TZRPFrame_MAX_VARINT);
        Quorva::BrxWriteBuf buf(fields.data(), fields.size());
        ASSERT_EQ(0, varint ? frame.packTLVWithVarint(buf) : frame.packTLVNoVarint(buf));
        fields.resize(buf.getUsedSize());
        const size_t headSize = fields.size();
        const Bytes body = hex("25 00 00 00 02 41 42");
        fields.insert(fields.end(), body.begin(), body.end());

        TZRPFrame decoded{};
        const Outcome outcome = predict<TZRPFrame>(bytesOf(decoded), fields, varint);

        EXPECT_EQ(surprise, outcome.result);
        EXPECT_EQ(headSize, outcome.taken);
        EXPECT_EQ(uint32_t{TZRPFrame::PRESENCE_Head}, outcome.seen & TZRPFrame::PRESENCE_Head);
        EXPECT_EQ(7, decoded.stHead.stBase.wMagic);
    }
}

// A text or an array that fills its field, and a field that is the last of the input.
TEST(PredictionOfBounds, TakesWhatFillsItsFieldAndTheInput) {
    char stored[5] = {};
    const Bytes text = hex("00 00 00 04 41 42 43 44");
    const char* const textEnd = text.data() + text.size();
    EXPECT_EQ(textEnd, takeText(text.data(), textEnd, stored, 5));
    EXPECT_STREQ("ABCD", stored);
    EXPECT_EQ(nullptr, takeText(text.data(), textEnd, stored, 4));
    EXPECT_EQ(nullptr, takeText(text.data(), textEnd - 1, stored, 5));

    EXPECT_EQ(textEnd, takeBytes(text.data(), textEnd, stored, 4));
    EXPECT_EQ(nullptr, takeBytes(text.data(), textEnd, stored, 3));
    EXPECT_EQ(nullptr, takeBytes(text.data(), textEnd - 1, stored, 4));
    const Bytes one = hex("00 00 00 01 41");
    EXPECT_EQ(one.data() + 5, takeBytes(one.data(), one.data() + 5, stored, 1));
    const Bytes none = hex("00 00 00 00");
    EXPECT_EQ(none.data() + 4, takeText(none.data(), none.data() + 4, stored, 1));
    EXPECT_EQ(nullptr, takeBytes(none.data(), none.data() + 4, stored, 1));
}

}  // namespace zrp_test
