// What holds for every structure, shown on its sample.
#include "tests/messages/all_types.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

template <class T>
class EveryStructure : public testing::Test {};

TYPED_TEST_SUITE(EveryStructure, Structures, StructureName);

template <class T>
Encoding encodingOf(bool flavour) {
    return flavour == varint ? Sample<T>::withVarint() : Sample<T>::withFixed();
}

/// An envelope that declares this many bytes of fields.
std::string envelope(bool flavour, size_t fieldBytes) {
    const size_t total = 5 + fieldBytes;
    const Bytes bytes = {static_cast<char>(flavour == varint ? 0xAA : 0x99), 0, 0,
                         static_cast<char>(total >> 8), static_cast<char>(total & 0xFF)};
    return toHex(bytes);
}

std::string enveloped(bool flavour, const std::string& fields, size_t declared) {
    return envelope(flavour, declared) + ' ' + fields;
}

/// The first `count` bytes of bytes written as digits.
std::string cut(const std::string& digits, size_t count) {
    return toHex(hex(digits).data(), count);
}

/// The bytes of the tag at the start of a field.
size_t tagSize(const std::string& field) {
    const Bytes bytes = hex(field);
    size_t size = 1;
    while ((bytes[size - 1] & 0x80) != 0) {
        ++size;
    }
    return size;
}

/// Whether a field is an unsigned 64-bit integer.
template <class T>
constexpr bool isUInt64(size_t field) {
    if constexpr (requires { Sample<T>::uint64Field; }) {
        return field == Sample<T>::uint64Field;
    }
    return false;
}

TYPED_TEST(EveryStructure, StartsFromItsDefaultsWhateverMemoryHeld) {
    const TypeParam object = made<TypeParam>();
    Sample<TypeParam>::expectDefaults(object);
    EXPECT_EQ(object.presence, 0u);
}

TYPED_TEST(EveryStructure, EncodesEveryFieldInBothFlavours) {
    const TypeParam object = sampleOf<TypeParam>();
    for (const bool flavour : {varint, fixed}) {
        const Encoding expected = encodingOf<TypeParam>(flavour);
        EXPECT_EQ(encode(object, flavour), written(0, expected.all()));
        EXPECT_EQ(encodeFields(object, flavour), written(0, expected.fieldBytes()));
    }
}

TYPED_TEST(EveryStructure, EncodesWhateverThePresenceWordSays) {
    const TypeParam object = sampleOf<TypeParam>();
    object.presence = 0xFFFFFFFF;
    for (const bool flavour : {varint, fixed}) {
        EXPECT_EQ(encode(object, flavour), written(0, encodingOf<TypeParam>(flavour).all()));
    }
    EXPECT_EQ(object.presence, 0xFFFFFFFFu) << "an encoder changed the presence word";
}

TYPED_TEST(EveryStructure, FitsABufferOfExactlyItsSize) {
    const TypeParam object = sampleOf<TypeParam>();
    for (const bool flavour : {varint, fixed}) {
        const std::string expected = encodingOf<TypeParam>(flavour).all();
        EXPECT_EQ(encode(object, flavour, hex(expected).size()), written(0, expected));
    }
}

TYPED_TEST(EveryStructure, DecodesEveryFieldOfBothFlavours) {
    for (const bool flavour : {varint, fixed}) {
        const Encoding encoding = encodingOf<TypeParam>(flavour);
        const size_t size = hex(encoding.all()).size();

        TypeParam object = made<TypeParam>();
        EXPECT_EQ(decode(object, encoding.all()), (Read{0, size}));
        Sample<TypeParam>::fields(object, Expect{});
        EXPECT_EQ(object.presence, Sample<TypeParam>::presence);

        TypeParam bare = made<TypeParam>();
        EXPECT_EQ(decodeFields(bare, encoding.fieldBytes(), flavour), (Read{0, size - 5}));
        Sample<TypeParam>::fields(bare, Expect{});
        EXPECT_EQ(bare.presence, Sample<TypeParam>::presence);
    }
}

TYPED_TEST(EveryStructure, DecodesTheSameWithBytesBehindTheDeclaredLength) {
    for (const bool flavour : {varint, fixed}) {
        const Encoding encoding = encodingOf<TypeParam>(flavour);
        const size_t size = hex(encoding.all()).size();
        for (const int behind : {0x00, 0x7F, 0xFF}) {
            TypeParam object = made<TypeParam>();
            EXPECT_EQ(
                decode(object, encoding.all() + repeated(static_cast<unsigned char>(behind), 4096)),
                (Read{0, size}));
            Sample<TypeParam>::fields(object, Expect{});
            EXPECT_EQ(object.presence, Sample<TypeParam>::presence);
        }
    }
}

TYPED_TEST(EveryStructure, DecodesFieldsInReverseOrderAndTwice) {
    for (const bool flavour : {varint, fixed}) {
        const Encoding encoding = encodingOf<TypeParam>(flavour);
        std::string reversed;
        for (const std::string& field : encoding.fields) {
            reversed = field + ' ' + reversed;
        }
        const std::string twice = reversed + encoding.fieldBytes();
        const size_t size = hex(twice).size();

        TypeParam object = made<TypeParam>();
        EXPECT_EQ(decode(object, enveloped(flavour, reversed, size / 2)), (Read{0, 5 + size / 2}));
        Sample<TypeParam>::fields(object, Expect{});
        EXPECT_EQ(object.presence, Sample<TypeParam>::presence);

        TypeParam again = made<TypeParam>();
        EXPECT_EQ(decode(again, enveloped(flavour, twice, size)), (Read{0, 5 + size}));
        Sample<TypeParam>::fields(again, Expect{});
    }
}

TYPED_TEST(EveryStructure, StepsOverUnknownFieldsOfEveryWireType) {
    // Field number 100 with type ids 0 to 5, and field number 0.
    const std::vector<std::string> unknown = {"C0 0C FF FF FF FF FF FF FF FF FF 01",
                                              "C1 0C 01",
                                              "C2 0C 01 02",
                                              "C3 0C 01 02 03 04",
                                              "C4 0C 01 02 03 04 05 06 07 08",
                                              "C5 0C 00 00 00 02 10 20",
                                              "01 7F"};
    for (const bool flavour : {varint, fixed}) {
        std::string mixed;
        for (const std::string& field : encodingOf<TypeParam>(flavour).fields) {
            for (const std::string& other : unknown) {
                mixed += ' ' + other;
            }
            mixed += ' ' + field;
        }
        const size_t size = hex(mixed).size();
        TypeParam object = made<TypeParam>();
        EXPECT_EQ(decode(object, enveloped(flavour, mixed, size)), (Read{0, 5 + size}));
        Sample<TypeParam>::fields(object, Expect{});
        EXPECT_EQ(object.presence, Sample<TypeParam>::presence);
    }
}

TYPED_TEST(EveryStructure, RefusesAnUnknownFieldOfUnknownWireType) {
    for (const bool flavour : {varint, fixed}) {
        for (const std::string tag : {"C6 0C", "C7 0C", "CF 0C", "06", "0F"}) {
            TypeParam object = made<TypeParam>();
            EXPECT_EQ(decodeFields(object, tag + " 00 00", flavour), (Read{-35, hex(tag).size()}));
            EXPECT_EQ(object.presence, 0u);
        }
    }
}

TYPED_TEST(EveryStructure, DeliberatelyReadsAKnownFieldWhateverTypeIdItsTagCarries) {
    for (const bool flavour : {varint, fixed}) {
        for (const int typeId : {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x0F}) {
            Bytes bytes;
            for (const std::string& field : encodingOf<TypeParam>(flavour).fields) {
                Bytes changed = hex(field);
                changed[0] = static_cast<char>((changed[0] & 0xF0) | typeId);
                bytes.insert(bytes.end(), changed.begin(), changed.end());
            }
            TypeParam object = made<TypeParam>();
            EXPECT_EQ(decodeFields(object, toHex(bytes), flavour), (Read{0, bytes.size()}));
            Sample<TypeParam>::fields(object, Expect{});
            EXPECT_EQ(object.presence, Sample<TypeParam>::presence);
        }
    }
}

TYPED_TEST(EveryStructure, KeepsItsFieldsWhereTheInputHasNone) {
    for (const std::string empty : {"AA 00 00 00 05", "99 00 00 00 05"}) {
        TypeParam object = dirty<TypeParam>();
        object.presence = 0;
        const std::string before = image(object);
        object.presence = 0xFFFFFFFF;
        EXPECT_EQ(decode(object, empty), (Read{0, 5}));
        EXPECT_EQ(image(object), before);
    }
}

TYPED_TEST(EveryStructure, DecodesNoFieldWhereTheDeclaredLengthIsBelowFive) {
    for (const bool flavour : {varint, fixed}) {
        const Encoding encoding = encodingOf<TypeParam>(flavour);
        for (const std::string declared : {"00", "01", "02", "03", "04"}) {
            TypeParam object = dirty<TypeParam>();
            object.presence = 0;
            const std::string before = image(object);
            object.presence = 0xFFFFFFFF;
            const std::string magic = flavour == varint ? "AA" : "99";
            EXPECT_EQ(decode(object, magic + " 00 00 00 " + declared + encoding.fieldBytes()),
                      (Read{-34, 5}));
            EXPECT_EQ(image(object), before);
        }
    }
}

TYPED_TEST(EveryStructure, LeavesEverythingAloneWhereTheEnvelopeFails) {
    for (const bool flavour : {varint, fixed}) {
        const std::string whole = encodingOf<TypeParam>(flavour).all();
        for (size_t size = 0; size < hex(whole).size(); ++size) {
            TypeParam object = dirty<TypeParam>();
            const std::string before = image(object);
            EXPECT_EQ(decode(object, cut(whole, size)), (Read{-2, notStored})) << size;
            EXPECT_EQ(image(object), before) << size;
        }
        TypeParam object = dirty<TypeParam>();
        const std::string before = image(object);
        EXPECT_EQ(decode(object, "AB" + whole.substr(2)), (Read{-32, notStored}));
        size_t used = notStored;
        EXPECT_EQ(object.unpackTLV(nullptr, 100, &used), -19);
        EXPECT_EQ(used, notStored);
        EXPECT_EQ(image(object), before);
    }
}

// An input that ends inside a field gives -2. One that ends between fields is complete. Deliberate:
// so is one that ends right behind the tag of a 64-bit unsigned varint, which reads as 0.
TYPED_TEST(EveryStructure, SaysNoDataWhereTheInputEndsInsideAField) {
    for (const bool flavour : {varint, fixed}) {
        const Encoding encoding = encodingOf<TypeParam>(flavour);
        size_t start = 0;
        uint32_t before = 0;
        for (size_t i = 0; i < encoding.fields.size(); ++i) {
            const size_t size = hex(encoding.fields[i]).size();
            const size_t tag = tagSize(encoding.fields[i]);
            const bool readsAsZero = flavour == varint && isUInt64<TypeParam>(i);
            for (size_t length = 0; length < size; ++length) {
                const bool complete = length == 0 || (readsAsZero && length == tag);
                const std::string fields = cut(encoding.fieldBytes(), start + length);
                TypeParam object = made<TypeParam>();
                const Read read = decode(object, enveloped(flavour, fields, start + length));
                EXPECT_EQ(read.result, complete ? 0 : -2) << "field " << i << " byte " << length;
                EXPECT_LE(read.used, 5 + start + length);
                EXPECT_EQ(object.presence, length < tag ? before : before | (1u << i))
                    << "field " << i << " byte " << length;
            }
            start += size;
            before |= 1u << i;
        }
        EXPECT_EQ(before, Sample<TypeParam>::presence);
    }
}

TYPED_TEST(EveryStructure, SaysLengthMismatchWhereAFieldGoesPastTheDeclaredLength) {
    for (const bool flavour : {varint, fixed}) {
        const Encoding encoding = encodingOf<TypeParam>(flavour);
        size_t start = 0;
        uint32_t read = 0;
        for (size_t i = 0; i < encoding.fields.size(); ++i) {
            const size_t end = start + hex(encoding.fields[i]).size();
            for (size_t declared = start; declared < end; ++declared) {
                const std::string input =
                    enveloped(flavour, encoding.fieldBytes(), declared) + repeated(0xFF, declared);
                const bool complete = declared == start;
                TypeParam object = made<TypeParam>();
                EXPECT_EQ(decode(object, input),
                          (complete ? Read{0, 5 + start} : Read{-34, 5 + end}))
                    << "field " << i << " declared " << declared;
                EXPECT_EQ(object.presence, complete ? read : read | (1u << i));
            }
            start = end;
            read |= 1u << i;
        }
    }
}

TYPED_TEST(EveryStructure, SaysNoRoomInEverySmallerBufferAndStillWritesTheHeader) {
    const TypeParam object = sampleOf<TypeParam>();
    for (const bool flavour : {varint, fixed}) {
        const std::string magic = flavour == varint ? "AA" : "99";
        const size_t whole = hex(encodingOf<TypeParam>(flavour).all()).size();
        for (size_t room = 1; room < whole; ++room) {
            const Written result = encode(object, flavour, room);
            EXPECT_EQ(result.result, -1) << room;
            EXPECT_LE(result.used, room);
            const std::string header = room < 5 ? magic : envelope(flavour, result.used - 5);
            EXPECT_EQ(result.bytes.substr(0, header.size()), header) << room;
        }
    }
}

TYPED_TEST(EveryStructure, RefusesToEncodeIntoNothing) {
    const TypeParam object = sampleOf<TypeParam>();
    for (const bool flavour : {varint, fixed}) {
        size_t used = notStored;
        EXPECT_EQ(object.packTLV(nullptr, 4096, &used, flavour), -19);
        char buffer[1] = {'\x5A'};
        EXPECT_EQ(object.packTLV(buffer, 0, &used, flavour), -19);
        EXPECT_EQ(buffer[0], '\x5A');
        EXPECT_EQ(used, notStored);
    }
}

TYPED_TEST(EveryStructure, NeedsNoPlaceForTheUsedSize) {
    const TypeParam object = sampleOf<TypeParam>();
    for (const bool flavour : {varint, fixed}) {
        const Bytes expected = hex(encodingOf<TypeParam>(flavour).all());
        Bytes bytes(expected.size());
        EXPECT_EQ(object.packTLV(bytes.data(), bytes.size(), nullptr, flavour), 0);
        EXPECT_EQ(toHex(bytes), toHex(expected));
        TypeParam decoded = made<TypeParam>();
        EXPECT_EQ(decoded.unpackTLV(bytes.data(), bytes.size(), nullptr), 0);
        Sample<TypeParam>::fields(decoded, Expect{});
    }
}

TYPED_TEST(EveryStructure, ReportsItsLargestEncoding) {
    const TypeParam object = made<TypeParam>();
    size_t size = 0;
    EXPECT_EQ(object.getTLVMaxPackedSize(&size, varint), 0);
    EXPECT_EQ(size, Sample<TypeParam>::maxVarint);
    EXPECT_EQ(object.getTLVMaxPackedSize(&size, fixed), 0);
    EXPECT_EQ(size, Sample<TypeParam>::maxFixed);
    EXPECT_EQ(object.getTLVMaxPackedSize(nullptr, varint), -19);
    EXPECT_EQ(object.getTLVMaxPackedSize(nullptr, fixed), -19);
}

TYPED_TEST(EveryStructure, HasNoRequiredFields) {
    const TypeParam object = made<TypeParam>();
    EXPECT_EQ(object.requiredFieldNum(), 0);
    char names[] = {'\x5A', '\x5A'};
    EXPECT_EQ(object.getLastLostRequiredFields(nullptr, 10), nullptr);
    EXPECT_EQ(object.getLastLostRequiredFields(names, 0), nullptr);
    EXPECT_EQ(toHex(names, 2), "5A 5A");
    EXPECT_EQ(object.getLastLostRequiredFields(names, 1), names);
    EXPECT_EQ(toHex(names, 2), "00 5A");
    names[0] = '\x5A';
    EXPECT_EQ(object.getLastLostRequiredFields(names, 2), names);
    EXPECT_EQ(toHex(names, 2), "00 5A");
}

TYPED_TEST(EveryStructure, ShowsEachPresenceBitThroughItsAccessorsAlone) {
    const std::vector<Accessors<TypeParam>> accessors = Sample<TypeParam>::accessors();
    ASSERT_EQ((1ull << accessors.size()) - 1, Sample<TypeParam>::presence);
    for (size_t bit = 0; bit < accessors.size(); ++bit) {
        const TypeParam object = made<TypeParam>();
        (object.*accessors[bit].set)();
        EXPECT_EQ(object.presence, 1u << bit) << accessors[bit].name;
        for (size_t other = 0; other < accessors.size(); ++other) {
            EXPECT_EQ((object.*accessors[other].has)(), other == bit) << accessors[other].name;
        }
    }
    const TypeParam all = made<TypeParam>();
    for (const Accessors<TypeParam>& accessor : accessors) {
        (all.*accessor.set)();
    }
    EXPECT_EQ(all.presence, Sample<TypeParam>::presence);
}

}  // namespace
}  // namespace zrp_test
