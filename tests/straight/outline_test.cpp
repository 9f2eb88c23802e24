// What an outline says of fields before they are read, over tables made up for it: the one of data
// frames is little of what tables may be.
#include "protocol/codec/outline.h"

#include <gtest/gtest.h>

namespace quorva_zrp::codec {

namespace {

struct Leaf {
    uint16_t number;
    uint32_t presence;
};

struct Holder {
    uint8_t byte;
    Leaf leaf;
    uint32_t presence;
};

union Choice {
    int8_t byte;
    Holder holder;
    Leaf leaf;
};

using Byte = Row<1, "", 0, uint8_t, 0>;
using ByteWithLongTag = Row<9, "", 0, int8_t, 0>;
using Number = Row<2, "", 0, uint16_t, 0>;
using Letters = Row<3, "", 0, char[8], 0>;
using LeafRow = Row<4, "", 0, Leaf, 0>;
using OptionalLeaf = Row<4, "", 0, Leaf, 0, GovernedBy<0, uint8_t>>;
using HolderRow = Row<5, "", 0, Holder, 0>;

}  // namespace

template <>
struct Fields<Leaf> {
    using Rows = RowList<Number>;
};
template <>
struct Fields<Holder> {
    using Rows = RowList<Byte, LeafRow>;
};
template <>
struct Fields<Choice> {
    using Rows = RowList<Row<0, "", 0, int8_t, 0>, Row<5, "", 0, Holder, 0, Hot>,
                         Row<0x400, "", 0, Leaf, 0, Hot>>;
};

namespace {

using ChoiceRow = Row<6, "", 0, Choice, 0, GovernedBy<0, uint8_t>>;

template <class... Rows>
bool isOutlined() {
    return Outline<Rows...>::extent().isOutlined;
}

template <class... Rows>
bool isExact() {
    return Outline<Rows...>::extent().isExact;
}

template <class... Rows>
size_t least() {
    return Outline<Rows...>::extent().least;
}

}  // namespace

TEST(Outline, BytesAlwaysTakeTheSame) {
    EXPECT_EQ(2u, least<Byte>());
    EXPECT_EQ(5u, (least<Byte, ByteWithLongTag>()));
    EXPECT_TRUE((isExact<Byte, ByteWithLongTag>()));
    EXPECT_TRUE((isOutlined<Byte, ByteWithLongTag>()));
}

TEST(Outline, WiderNumbersAndTextsAreForLeavesOnly) {
    EXPECT_FALSE(isOutlined<Number>());
    EXPECT_FALSE(isOutlined<Letters>());
    EXPECT_FALSE((isOutlined<Byte, Number>()));
    EXPECT_FALSE((isOutlined<Number, Byte>()));
}

TEST(Outline, LeavesMayBeEmptyAndFollowEachOther) {
    EXPECT_EQ(5u, least<LeafRow>());
    EXPECT_EQ(12u, (least<LeafRow, Byte, LeafRow>()));
    EXPECT_FALSE(isExact<LeafRow>());
    EXPECT_TRUE((isOutlined<LeafRow, Byte, LeafRow>()));
}

TEST(Outline, WhatMayBeLeftOutIsInNone) {
    EXPECT_FALSE(isOutlined<OptionalLeaf>());
    EXPECT_FALSE((isOutlined<Byte, OptionalLeaf>()));
}

TEST(Outline, HoldersEndWhereWhatIsBehindTellsIt) {
    EXPECT_EQ(5u + 2u + 5u, least<HolderRow>());
    EXPECT_TRUE(isOutlined<HolderRow>());
    EXPECT_TRUE((isOutlined<HolderRow, Byte>()));
    EXPECT_FALSE((isOutlined<HolderRow, LeafRow>()));
    EXPECT_FALSE((isOutlined<HolderRow, HolderRow>()));
}

TEST(Outline, UnionsHaveRoomForAnyHotMember) {
    if (keepsCodeSmall) {
        EXPECT_FALSE(isOutlined<ChoiceRow>());  // nothing is hot
        return;
    }
    // The longer one with the empty leaf: 12 bytes against 3 + 4.
    EXPECT_EQ(5u + 12u, least<ChoiceRow>());
    EXPECT_FALSE(isExact<ChoiceRow>());
    EXPECT_TRUE(isOutlined<ChoiceRow>());
    EXPECT_TRUE((isOutlined<ChoiceRow, Byte>()));
    EXPECT_FALSE((isOutlined<ChoiceRow, LeafRow>()));
}

}  // namespace quorva_zrp::codec
