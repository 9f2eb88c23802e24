// What an encoder writes is read by prediction alone. A field that prediction misses is read all
// the same, only slower, so that nothing else can tell.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>

#include "protocol/codec/decode.h"
#include "protocol/codec/field_data.h"
#include "tests/differential/rearrange.h"
#include "tests/differential/subject.h"
#include "tests/oracle/record.h"

namespace zrp_test {

using namespace quorva_zrp;
using namespace quorva_zrp::codec;

namespace {

/// Whether the fields are read without the loop over fields as data.
template <class Record>
bool predict(char* record, const Bytes& fields, bool varint) {
    const char* const from = fields.data();
    const char* const until = from + fields.size();
    return varint ? decode<Record, true>(from, until - 1, lastVarint(from, until - 1), record)
                  : decode<Record, false>(from, until - 1, until - 1, record);
}

/// A structure that gets straight-line code.
struct Straight {
    const char* name;
    bool (*predict)(char* record, const Bytes& fields, bool varint);
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

    /// Expects sound records to be read by prediction alone, with the outcome of any decode, when
    /// their encoding has become what `arrange` makes of it.
    void expectAllTaken(
        const std::function<Bytes(const zrp_oracle::Type&, const Bytes&)>& arrange) const {
        Random random(20);
        const size_t variants = variantCount(*pair().oracle);
        for (size_t i = 0; i < 60 * variants; ++i) {
            const Subject subject = subjectWithoutBody(random, i % variants);
            const Bytes fields = arrange(*pair().oracle, fieldsOf(subject));
            Bytes record(recordSize(pair()), '\0');
            const Bytes expected = decoded(record, fields);
            ASSERT_TRUE(straight().predict(record.data(), fields, varint())) << toHex(fields);
            ASSERT_EQ(toHex(expected), toHex(record)) << toHex(fields);
        }
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
    expectAllTaken([](const zrp_oracle::Type&, const Bytes& fields) { return fields; });
}

TEST_P(Prediction, TakesFieldsInReverse) {
    expectAllTaken(reversed);
}

TEST_P(Prediction, TakesFieldsAmongUnknownOnes) {
    // Of every wire type, by numbers that take one byte of tag to three.
    const Bytes unknown[] = {hex("00 AC 02"),
                             hex("F1 0F 61"),
                             hex("82 FD 01 61 62"),
                             hex("83 19 61 62 63 64"),
                             hex("84 19 61 62 63 64 65 66 67 68"),
                             hex("85 19 00 00 00 01 61")};
    expectAllTaken([&](const zrp_oracle::Type& type, const Bytes& fields) {
        size_t turn = 0;
        return rearranged(type, fields, [&](std::vector<Bytes>& parts) {
            for (size_t i = 0; i <= parts.size(); i += 2) {
                parts.insert(parts.begin() + static_cast<std::ptrdiff_t>(i),
                             unknown[turn++ % std::size(unknown)]);
            }
        });
    });
}

TEST_P(Prediction, TakesStructuresWithoutTheirLastFields) {
    expectAllTaken([](const zrp_oracle::Type& type, const Bytes& fields) {
        return rearranged(type, fields, [](std::vector<Bytes>& parts) {
            parts.resize(parts.size() - parts.size() / 2);
        });
    });
}

TEST_P(Prediction, TakesStructuresWithoutTheirFirstFields) {
    expectAllTaken([](const zrp_oracle::Type& type, const Bytes& fields) {
        return rearranged(type, fields, [](std::vector<Bytes>& parts) {
            parts.erase(parts.begin(),
                        parts.begin() + static_cast<std::ptrdiff_t>(parts.size() / 2));
        });
    });
}

INSTANTIATE_TEST_SUITE_P(Types, Prediction,
                         testing::Combine(testing::ValuesIn(straightTypes), testing::Bool()),
                         [](const auto& instance) {
                             return std::string(std::get<0>(instance.param).name) +
                                    (std::get<1>(instance.param) ? "Varint" : "Fixed");
                         });

// A field that comes again, or in another form than encoders give it, is for the loop.
TEST(PredictionOfOneField, GivesUpWhatNoEncoderWrites) {
    const char* const lost[] = {
        "10 05 10 06",              // twice
        "11 05",                    // of another wire type
        "90 00 05",                 // a tag in more groups than it needs
        "90 80 00 05",              //
        "10 80",                    // a value that does not end
        "10 05 20",                 // nothing behind the tag
        "10 05 80 19",              // an unknown field without its value
        "10 05 80 80 00 01",        // a tag of an unknown field in more groups than it needs
        "10 05 85 19 00 00 00 01",  // an unknown field longer than what is there
        "10 05 86 19 00",           // of no wire type
    };
    for (const char* const fields : lost) {
        TZRPBase base{};
        EXPECT_FALSE(predict<TZRPBase>(bytesOf(base), hex(fields), true)) << fields;
    }
    for (const char* const fields :
         {"10 05", "20 05 10 06", "20 05 10 06 20 07", "10 05 80 19 01", "80 19 01"}) {
        TZRPBase base{};
        EXPECT_TRUE(predict<TZRPBase>(bytesOf(base), hex(fields), true)) << fields;
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
