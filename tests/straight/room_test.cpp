// When an encoder may leave out its checks of the room: the most that a record can take is told to
// the byte. Told too large it would only be slower.
#include <gtest/gtest.h>

#include <algorithm>

#include "protocol/codec/encode.h"
#include "tests/differential/subject.h"
#include "tests/oracle/record.h"
#include "tests/support/every_type.h"

namespace zrp_test {

using namespace quorva_zrp;
using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

namespace {

uint8_t indexOf(const char* name) {
    const struct {
        const char* name;
        uint8_t index;
    } types[] = {
#define ZRP_INDEX(Type) {#Type, codec::typeIndex<Type>}
        ZRP_EVERY_TYPE(ZRP_INDEX, ZRP_INDEX)
#undef ZRP_INDEX
    };
    for (const auto& type : types) {
        if (std::string(type.name) == name) {
            return type.index;
        }
    }
    ADD_FAILURE() << name << " is no type";
    return 0;
}

size_t groupsOf(uint64_t value) {
    return value < 0x80 ? 1 : 1 + groupsOf(value >> 7);
}

/// The most that a field of this record takes, whatever its integers and texts are.
uint64_t mostOf(const Field& field, const char* record, bool varint);

/// Whether there is a union in it or bytes behind it. Records of other types are not looked at:
/// they take what the type can take.
bool hasChoices(const Type& type) {
    return std::any_of(type.fields.begin(), type.fields.end(), [](const Field& field) {
        return field.kind == Kind::unionValue || (field.kind == Kind::bytes && field.size == 0) ||
               (field.kind == Kind::structure && hasChoices(*field.type));
    });
}

uint64_t mostOfFields(const Type& type, const char* record, bool varint) {
    uint64_t sum = 0;
    for (const Field& field : type.fields) {
        if (!hasChoices(type) || !zrp_oracle::isLeftOut(field, record)) {
            sum += mostOf(field, record, varint);
        }
    }
    return sum;
}

uint64_t mostOfContent(const Field& field, const char* record, bool varint) {
    const char* const at = record + field.offset;
    switch (field.kind) {
        case Kind::structure:
            return mostOfFields(*field.type, at, varint);
        case Kind::unionValue: {
            const Field* const member =
                zrp_oracle::fieldNumbered(*field.type, zrp_oracle::selectorOf(field, record));
            return member != nullptr ? mostOf(*member, at, varint) : 0;
        }
        default:
            return field.size != 0 ? field.size : zrp_oracle::valueAt(record, field.governor);
    }
}

uint64_t mostOf(const Field& field, const char* record, bool varint) {
    // The type of the value in a tag takes less than four bits and adds no group.
    const size_t tag = groupsOf(uint64_t{field.number} * 16);
    const size_t width = zrp_oracle::integerWidth(field.kind);
    if (width == 0) {
        return tag + 4 + mostOfContent(field, record, varint);
    }
    return tag + (varint && width != 1 ? groupsOf(UINT64_MAX >> (64 - 8 * width)) : width);
}

class Room : public testing::TestWithParam<TypePair> {};

std::vector<TypePair> structures() {
    std::vector<TypePair> pairs = typePairs();
    std::erase_if(pairs, [](const TypePair& pair) { return pair.oracle->isUnion; });
    return pairs;
}

template <class Record>
void expectRoomForTheLargest() {
    const Record record{};
    for (const bool varint : {true, false}) {
        const size_t largest = varint ? codec::Fields<Record>::largestBody(true)
                                      : codec::Fields<Record>::largestBody(false);
        const char* const bytes = codec::bytesOf(record);
        EXPECT_TRUE(codec::fitsAlways<Record>(bytes, largest, 0, varint));
        EXPECT_TRUE(codec::fitsAlways<Record>(bytes, largest + 5, 5, varint));
        EXPECT_FALSE(codec::fitsAlways<Record>(bytes, largest - 1, 0, varint));
        EXPECT_FALSE(codec::fitsAlways<Record>(bytes, largest + 4, 5, varint));
        const auto now =
            static_cast<size_t>(codec::largestNow(codec::typeIndex<Record>, bytes, varint));
        EXPECT_TRUE(codec::fitsNow<Record>(bytes, now, varint));
        EXPECT_FALSE(codec::fitsNow<Record>(bytes, now - 1, varint));
    }
}

}  // namespace

TEST_P(Room, IsToldToTheByteForARecord) {
    const TypePair& pair = GetParam();
    Random random(21);
    const size_t variants = variantCount(*pair.oracle);
    for (size_t i = 0; i < 30 * variants; ++i) {
        const Soundness soundness = i % 2 == 0 ? Soundness::sound : Soundness::doubtful;
        const Subject subject = randomSubject(pair, random, i / 2, soundness);
        for (const bool varint : {true, false}) {
            ASSERT_EQ(mostOfFields(*pair.oracle, subject.record.data(), varint),
                      codec::largestNow(indexOf(pair.library->name), subject.record.data(), varint))
                << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Structures, Room, testing::ValuesIn(structures()),
                         [](const auto& instance) {
                             return std::string(instance.param.library->name);
                         });

TEST(RoomForTheLargest, IsEnoughAndNotOneByteLess) {
    expectRoomForTheLargest<TZRPBase>();
    expectRoomForTheLargest<TZRPAuthRefreshNotifyBody>();
    expectRoomForTheLargest<TZRPHead>();
    expectRoomForTheLargest<TZRPFrame>();
    expectRoomForTheLargest<TZRPInFrame>();
}

TEST(RoomForTheLargest, GrowsByTheBytesBehindAFrame) {
    TZRPFrame frame{};
    frame.stHead.stBase.dwBodyLen = 7;
    const char* const bytes = codec::bytesOf(frame);
    const size_t largest = codec::Fields<TZRPFrame>::largestBody(false);
    EXPECT_TRUE(codec::fitsAlways<TZRPFrame>(bytes, largest + 7, 0, false));
    EXPECT_FALSE(codec::fitsAlways<TZRPFrame>(bytes, largest + 6, 0, false));
}

}  // namespace zrp_test
