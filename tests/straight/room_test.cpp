// When an encoder may leave out its checks of the room: the most that a record can take is told to
// the byte. Told too large it would only be slower.
#include <gtest/gtest.h>

#include <algorithm>

#include "protocol/codec/envelope.h"
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

/// Stands in for straight-line code: says that it was taken.
bool isTaken;
codec::EncodeStep take(const char*, char* to) {
    isTaken = true;
    return {to, 0};
}

/// Whether a record is encoded by straight-line code into this much room.
bool isStraightInto(uint8_t type, const char* record, bool varint, uint64_t largest, size_t room) {
    Bytes bytes(room + 1);
    Quorva::BrxWriteBuf buf(bytes.data(), room);
    isTaken = false;
    (void)codec::encodeInto(type, varint, take, largest, record, buf);
    return isTaken;
}

/// The same with an envelope, in room that the largest record of the type would not fit into.
bool isStraightPacked(uint8_t type, const char* record, bool varint, size_t room) {
    Bytes bytes(room + 1);
    isTaken = false;
    (void)codec::packTight(type, record, bytes.data(), room, nullptr, varint, take);
    return isTaken;
}

template <class Record>
void expectRoomForTheLargest() {
    const Record record{};
    const uint8_t type = codec::typeIndex<Record>;
    const char* const bytes = codec::bytesOf(record);
    for (const bool varint : {true, false}) {
        const size_t largest = varint ? codec::Fields<Record>::largestBody(true)
                                      : codec::Fields<Record>::largestBody(false);
        EXPECT_EQ(largest, codec::largestAlways<Record>(bytes, varint));
        const auto now = static_cast<size_t>(codec::largestNow(type, bytes, varint));
        EXPECT_TRUE(isStraightInto(type, bytes, varint, UINT64_MAX, now));
        EXPECT_FALSE(isStraightInto(type, bytes, varint, UINT64_MAX, now - 1));
        EXPECT_TRUE(isStraightInto(type, bytes, varint, now - 2, now - 2));
        EXPECT_FALSE(isStraightInto(type, bytes, varint, now - 2, now - 3));
        EXPECT_TRUE(isStraightPacked(type, bytes, varint, now + 5));
        EXPECT_FALSE(isStraightPacked(type, bytes, varint, now + 4));
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
    EXPECT_EQ(largest + 7, codec::largestAlways<TZRPFrame>(bytes, false));
    frame.stHead.stBase.dwBodyLen = UINT32_MAX;
    EXPECT_EQ(uint64_t{largest} + UINT32_MAX, codec::largestAlways<TZRPFrame>(bytes, false));
}

}  // namespace zrp_test
