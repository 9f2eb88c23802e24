// What holds for the text dump of every structure and of every member of every union, shown on the
// samples.
#include "tests/messages/all_types.h"

namespace zrp_test {
namespace {

constexpr int indents[] = {-1, 0, 3, INT_MIN, INT_MAX, INT_MAX - 1};
constexpr char separators[] = {'\n', ' ', '|', '\x80', '\0'};

/// Prints into the whole of an array and into every smaller one. `print` takes the array, its size
/// and a place for the used size.
template <class Print>
void expectCutTexts(const std::string& whole, Print print) {
    for (size_t room = 0; room <= whole.size() + 1; ++room) {
        Bytes memory(room + 1, static_cast<char>(untouched));
        size_t used = notStored;
        const bool fits = room > whole.size();
        EXPECT_EQ(print(memory.data(), room, &used), fits ? 0 : -1) << room;
        ASSERT_LE(used, room);
        EXPECT_EQ(std::string(memory.data(), used), whole.substr(0, used));
        EXPECT_EQ(used == whole.size(), fits) << room;
        EXPECT_EQ(static_cast<unsigned char>(memory[room]), untouched) << "written past its end";
    }
}

/// Makes each formatting call fail in turn: its result comes back and no call follows.
template <class Print>
void expectEveryFailureToEndTheDump(const Calls& calls, Print print) {
    for (size_t failing = 0; failing < calls.size(); ++failing) {
        const int failure = -100 - static_cast<int>(failing);
        const Dump dump = captureDump(print, failing, failure);
        EXPECT_EQ(dump.result, failure);
        EXPECT_EQ(dump.calls,
                  Calls(calls.begin(), calls.begin() + static_cast<ptrdiff_t>(failing) + 1));
    }
}

template <class T>
class EveryStructureDump : public testing::Test {};
TYPED_TEST_SUITE(EveryStructureDump, Structures, StructureName);

TYPED_TEST(EveryStructureDump, PrintsItsFieldsInOrderAtEveryIndentWithEverySeparator) {
    const TypeParam object = sampleOf<TypeParam>();
    for (const int indent : indents) {
        for (const char separator : separators) {
            const Dump printed = dump(object, indent, separator);
            EXPECT_EQ(printed.result, 0);
            EXPECT_EQ(printed.calls, at(Sample<TypeParam>::dump(), indent, separator));
        }
    }
}

TYPED_TEST(EveryStructureDump, PrintsWhateverThePresenceWordSays) {
    const TypeParam object = sampleOf<TypeParam>();
    object.presence = 0xFFFFFFFF;
    EXPECT_EQ(dump(object).calls, Sample<TypeParam>::dump());
    EXPECT_EQ(object.presence, 0xFFFFFFFFu);
}

TYPED_TEST(EveryStructureDump, EndsWithTheFailureOfAFormatter) {
    const TypeParam object = sampleOf<TypeParam>();
    expectEveryFailureToEndTheDump(Sample<TypeParam>::dump(), [&](Quorva::BrxWriteBuf& buf) {
        return object.visualize(buf, 0, '\n');
    });
}

TYPED_TEST(EveryStructureDump, EndsWithNoRoomInEverySmallerBuffer) {
    const TypeParam object = sampleOf<TypeParam>();
    expectCutTexts(dump(object, 1, ';').text, [&](char* buffer, size_t size, size_t* used) {
        return object.visualize(buffer, size, used, 1, ';');
    });
}

TYPED_TEST(EveryStructureDump, AlwaysYieldsATerminatedTextFromVisualizeEx) {
    const TypeParam object = sampleOf<TypeParam>();
    const std::string whole = dump(object, 2, ',').text;
    for (size_t room = 1; room <= whole.size() + 1; ++room) {
        Bytes memory(room + 1, static_cast<char>(untouched));
        size_t used = notStored;
        EXPECT_EQ(object.visualize_ex(memory.data(), room, &used, 2, ','), memory.data());
        ASSERT_LT(used, room);
        EXPECT_EQ(memory.data(), whole.substr(0, used));
        EXPECT_EQ(used == whole.size(), room > whole.size());
        EXPECT_EQ(static_cast<unsigned char>(memory[room]), untouched) << "written past its end";

        Bytes again(room + 1, static_cast<char>(untouched));
        Quorva::BrxWriteBuf buf(again.data(), room);
        EXPECT_EQ(object.visualize_ex(buf, 2, ','), again.data());
        EXPECT_EQ(buf.getUsedSize(), used);
        EXPECT_EQ(toHex(again), toHex(memory));
    }
}

template <class U>
class EveryUnionDump : public testing::Test {};
TYPED_TEST_SUITE(EveryUnionDump, Unions, UnionName);

TYPED_TEST(EveryUnionDump, PrintsTheSelectedMemberAtEveryIndentWithEverySeparator) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        TypeParam object = made<TypeParam>(member.selector);
        member.set(object);
        for (const int indent : indents) {
            for (const char separator : separators) {
                const Dump printed = dumpMember(member.selector, object, indent, separator);
                EXPECT_EQ(printed.result, 0);
                EXPECT_EQ(printed.calls, at(member.dump, indent, separator));
            }
        }
    }
}

TYPED_TEST(EveryUnionDump, EndsWithTheFailureOfAFormatter) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        TypeParam object = made<TypeParam>(member.selector);
        member.set(object);
        expectEveryFailureToEndTheDump(member.dump, [&](Quorva::BrxWriteBuf& buf) {
            return object.visualize(member.selector, buf, 0, '\n');
        });
    }
}

TYPED_TEST(EveryUnionDump, EndsWithNoRoomInEverySmallerBuffer) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        TypeParam object = made<TypeParam>(member.selector);
        member.set(object);
        const std::string whole = dumpMember(member.selector, object, -3, '/').text;
        expectCutTexts(whole, [&](char* buffer, size_t size, size_t* used) {
            return object.visualize(member.selector, buffer, size, used, -3, '/');
        });
    }
}

TYPED_TEST(EveryUnionDump, PrintsNothingForASelectorWithoutMember) {
    const TypeParam object = made<TypeParam>();
    for (const long long selector : {-1LL, 5LL, 9LL, 4096LL, 32771LL, 65536LL, 1LL << 32,
                                     (1LL << 32) + 4098, -4294967296LL, LLONG_MIN, LLONG_MAX}) {
        const Dump printed = dumpMember(selector, object);
        EXPECT_EQ(printed.result, 0);
        EXPECT_EQ(printed.calls, Calls{});
        EXPECT_EQ(printed.text, "");
        char none = '\x5A';
        size_t used = notStored;
        EXPECT_EQ(object.visualize(selector, &none, 0, &used, 0, '\n'), 0);
        EXPECT_EQ(used, 0u);
        EXPECT_EQ(none, '\x5A');
    }
}

TYPED_TEST(EveryUnionDump, PrintsNothingForTheLargestSelectorsOf32Bits) {
    const TypeParam object = made<TypeParam>();
    for (long long selector = 0xFFFFFFE0; selector <= 0xFFFFFFFF; ++selector) {
        const Dump printed = dumpMember(selector, object);
        EXPECT_EQ(printed.result, 0) << selector;
        EXPECT_EQ(printed.calls, Calls{}) << selector;
    }
}

TYPED_TEST(EveryUnionDump, RefusesANullBuffer) {
    const TypeParam object = made<TypeParam>();
    size_t used = notStored;
    EXPECT_EQ(object.visualize(0, nullptr, 100, &used, 0, '\n'), -19);
    EXPECT_EQ(object.visualize(-1, nullptr, 100, &used, 0, '\n'), -19);
    EXPECT_EQ(object.visualize(0, nullptr, 0, &used, 0, '\n'), -19);
    EXPECT_EQ(used, notStored);
}

TYPED_TEST(EveryUnionDump, NeedsNoPlaceForTheUsedSize) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        TypeParam object = made<TypeParam>(member.selector);
        member.set(object);
        const std::string whole = dumpMember(member.selector, object).text;
        Bytes memory(whole.size() + 1);
        EXPECT_EQ(object.visualize(member.selector, memory.data(), memory.size(), nullptr, 0, '\n'),
                  0);
        EXPECT_EQ(std::string(memory.data(), whole.size()), whole);
    }
}

}  // namespace
}  // namespace zrp_test
