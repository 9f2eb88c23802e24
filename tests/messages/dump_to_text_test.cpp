// The four ways into the text dump: into a buffer or an array, with a result or with a text that a
// log call can use at once.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

/// A key that prints as `whole`, in the pieces that are written one after the other.
TVESKKey key() {
    TVESKKey object = made<TVESKKey>();
    object.bLength = 3;
    put(object.szValue, "01 02 03");
    return object;
}
const std::vector<std::string> pieces = {"[bLength]0x03;", "[szValue]3", " 0x01",
                                         " 0x02",          " 0x03",      ";"};
const std::string whole = "[bLength]0x03;[szValue]3 0x01 0x02 0x03;";

/// The pieces that fit into `room` bytes: each needs one byte more, for its NUL.
std::string fitting(size_t room) {
    std::string printed;
    for (const std::string& piece : pieces) {
        if (printed.size() + piece.size() + 1 > room) {
            break;
        }
        printed += piece;
    }
    return printed;
}

TEST(DumpToText, NeedsRoomForTheTextAndANul) {
    const TVESKKey object = key();
    ASSERT_EQ(whole.size(), 40u);
    for (size_t room = 0; room <= 48; ++room) {
        Bytes memory(64, static_cast<char>(untouched));
        size_t used = notStored;
        EXPECT_EQ(object.visualize(memory.data(), room, &used, 0, ';'), room > 40 ? 0 : -1) << room;
        EXPECT_EQ(std::string(memory.data(), used), fitting(room));
        EXPECT_EQ(toHex(memory.data() + room, 64 - room), repeated(untouched, 64 - room));
    }
}

TEST(DumpToText, AddsNoNulOfItsOwn) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    Recorder recorder;
    recorder.failAt(0, -5);
    Bytes memory(4, static_cast<char>(untouched));
    size_t used = notStored;
    EXPECT_EQ(notice.visualize(memory.data(), memory.size(), &used, 0, '\n'), -5);
    EXPECT_EQ(used, 0u);
    EXPECT_EQ(toHex(memory), "A5 A5 A5 A5");
}

TEST(DumpToText, RefusesANullArray) {
    const TVESKKey object = key();
    size_t used = notStored;
    EXPECT_EQ(object.visualize(nullptr, 100, &used, 0, ';'), -19);
    EXPECT_EQ(object.visualize(nullptr, 0, &used, 0, ';'), -19);
    EXPECT_EQ(used, notStored);
    EXPECT_EQ(object.visualize(nullptr, 100, nullptr, 0, ';'), -19);
}

TEST(DumpToText, DoesNotRefuseAnArrayOfSizeZeroButFindsNoRoomInIt) {
    const TVESKKey object = key();
    char memory[1] = {'\x5A'};
    size_t used = notStored;
    EXPECT_EQ(object.visualize(memory, 0, &used, 0, ';'), -1);
    EXPECT_EQ(used, 0u);
    EXPECT_EQ(memory[0], '\x5A');
}

TEST(DumpToText, NeedsNoPlaceForTheUsedSize) {
    const TVESKKey object = key();
    char memory[64];
    EXPECT_EQ(object.visualize(memory, sizeof(memory), nullptr, 0, ';'), 0);
    EXPECT_EQ(std::string(memory, 40), whole);
    EXPECT_EQ(object.visualize_ex(memory, sizeof(memory), nullptr, 0, ';'), memory);
    EXPECT_EQ(std::string(memory), whole);
}

TEST(DumpToText, StoresTheUsedSizeOfADumpThatFails) {
    TVESKKey object = key();
    object.bLength = 129;
    char memory[64];
    size_t used = notStored;
    EXPECT_EQ(object.visualize(memory, sizeof(memory), &used, 0, ';'), -7);
    EXPECT_EQ(std::string(memory, used), "[bLength]0x81;");
}

TEST(DumpToText, ContinuesAtThePositionOfABuffer) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    char memory[64] = {};
    Quorva::BrxWriteBuf buf(memory, sizeof(memory));
    EXPECT_EQ(buf.textize("notice: "), 0);
    EXPECT_EQ(notice.visualize(buf, 0, ';'), 0);
    EXPECT_EQ(buf.getUsedSize(), 22u);
    EXPECT_STREQ(memory, "notice: [dwReserved]0;");
}

TEST(DumpToText, PrintsNothingIntoABufferWithoutMemory) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    Quorva::BrxWriteBuf none(nullptr, 100);
    EXPECT_EQ(notice.visualize(none, 0, ';'), -1);
    EXPECT_EQ(none.getUsedSize(), 0u);
}

// --- visualize_ex -------------------------------------------------------------------------------

TEST(DumpToLog, IsAlwaysATerminatedText) {
    const TVESKKey object = key();
    for (size_t room = 1; room <= 48; ++room) {
        Bytes memory(64, static_cast<char>(untouched));
        size_t used = notStored;
        EXPECT_EQ(object.visualize_ex(memory.data(), room, &used, 0, ';'), memory.data());
        EXPECT_EQ(used, fitting(room).size()) << room;
        EXPECT_EQ(std::string(memory.data()), fitting(room));
        EXPECT_EQ(toHex(memory.data() + room, 64 - room), repeated(untouched, 64 - room));
        if (room <= 40) {
            EXPECT_EQ(memory[room - 1], '\0') << "cut short in " << room;
        }
    }
}

TEST(DumpToLog, IsTheSameThroughABuffer) {
    const TVESKKey object = key();
    for (size_t room = 1; room <= 48; ++room) {
        Bytes memory(64, static_cast<char>(untouched));
        Quorva::BrxWriteBuf buf(memory.data(), room);
        EXPECT_EQ(object.visualize_ex(buf, 0, ';'), memory.data());
        EXPECT_EQ(std::string(memory.data()), fitting(room));
        EXPECT_EQ(buf.getUsedSize(), fitting(room).size()) << "the NUL is not counted";
        EXPECT_EQ(toHex(memory.data() + room, 64 - room), repeated(untouched, 64 - room));
    }
}

TEST(DumpToLog, IsAnEmptyTextWithoutMemory) {
    const TVESKKey object = key();
    size_t used = notStored;
    EXPECT_STREQ(object.visualize_ex(nullptr, 100, &used, 0, ';'), "");
    EXPECT_STREQ(object.visualize_ex(nullptr, 0, &used, 0, ';'), "");
    char memory[1] = {'\x5A'};
    const char* const empty = object.visualize_ex(memory, 0, &used, 0, ';');
    EXPECT_STREQ(empty, "");
    EXPECT_NE(empty, memory);
    EXPECT_EQ(used, notStored);
    EXPECT_EQ(memory[0], '\x5A');

    Quorva::BrxWriteBuf none(nullptr, 100);
    EXPECT_STREQ(object.visualize_ex(none, 0, ';'), "");
    Quorva::BrxWriteBuf empties(memory, 0);
    EXPECT_STREQ(object.visualize_ex(empties, 0, ';'), "");
    EXPECT_NE(object.visualize_ex(empties, 0, ';'), memory);
    EXPECT_EQ(memory[0], '\x5A');
}

TEST(DumpToLog, PrintsIntoAnyMemoryButNone) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    char memory[64] = {};
    const auto callsFor = [&](Quorva::BrxWriteBuf& buf) {
        const Recorder recorder;
        (void)notice.visualize_ex(buf, 0, ';');
        return recorder.calls().size();
    };
    Quorva::BrxWriteBuf none(nullptr, 100);
    EXPECT_EQ(callsFor(none), 0U);
    Quorva::BrxWriteBuf empty(memory, 0);
    EXPECT_EQ(callsFor(empty), 0U);
    Quorva::BrxWriteBuf one(memory, 1);
    EXPECT_EQ(callsFor(one), 1U);
    Quorva::BrxWriteBuf all(memory, SIZE_MAX);
    EXPECT_EQ(callsFor(all), 1U);
}

TEST(DumpToLog, StartsAtTheStartOfABufferThatHoldsTextAlready) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    char memory[64];
    memset(memory, 'x', sizeof(memory));
    Quorva::BrxWriteBuf buf(memory, sizeof(memory));
    EXPECT_EQ(buf.textize("notice: "), 0);
    EXPECT_EQ(notice.visualize_ex(buf, 0, ';'), memory);
    EXPECT_STREQ(memory, "notice: [dwReserved]0;");
    EXPECT_EQ(buf.getUsedSize(), 22u);
}

TEST(DumpToLog, CutsTheLastByteOfABufferThatIsFull) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    char memory[5] = {'f', 'u', 'l', 'l', '!'};
    Quorva::BrxWriteBuf buf(memory, 4);
    EXPECT_EQ(buf.reserve(4), 0);
    EXPECT_EQ(notice.visualize_ex(buf, 0, ';'), memory);
    EXPECT_EQ(toHex(memory, 5), "66 75 6C 00 21");
    EXPECT_EQ(buf.getUsedSize(), 4u);
}

TEST(DumpToLog, EndsWhereAFormatterFailed) {
    const TZRPSStopBody notice = made<TZRPSStopBody>();
    Recorder recorder;
    recorder.failAt(1, -5);
    Bytes memory(32, static_cast<char>(untouched));
    size_t used = notStored;
    EXPECT_EQ(notice.visualize_ex(memory.data(), memory.size(), &used, 0, ';'), memory.data());
    EXPECT_EQ(used, 10u);
    EXPECT_EQ(std::string(memory.data()), "[dwCode]0;");
    EXPECT_EQ(toHex(memory.data() + 11, 21), repeated(untouched, 21));
}

TEST(DumpToLog, HoldsWhatWasPrintedBeforeACountThatIsTooBig) {
    TVESKKey object = key();
    object.bLength = 255;
    char memory[64];
    size_t used = notStored;
    EXPECT_STREQ(object.visualize_ex(memory, sizeof(memory), &used, 0, ';'), "[bLength]0xff;");
    EXPECT_EQ(used, 14u);
}

// --- Unions -------------------------------------------------------------------------------------

TEST(DumpToText, OfAUnionStoresWhatTheMemberTook) {
    TVESKIDValue value = made<TVESKIDValue>();
    value.dwUINT32 = 300;
    char memory[32];
    size_t used = notStored;
    EXPECT_EQ(value.visualize(1, memory, sizeof(memory), &used, 0, ';'), 0);
    EXPECT_EQ(std::string(memory, used), "[dwUINT32]300;");
    EXPECT_EQ(value.visualize(1, memory, 14, &used, 0, ';'), -1);
    EXPECT_EQ(used, 0u);
    EXPECT_EQ(value.visualize(1, memory, 15, &used, 0, ';'), 0);
    EXPECT_EQ(used, 14u);
}

TEST(DumpToText, OfAUnionWritesNothingForASelectorWithoutMember) {
    const TVESKIDValue value = made<TVESKIDValue>();
    char memory[1] = {'\x5A'};
    size_t used = notStored;
    EXPECT_EQ(value.visualize(4, memory, 0, &used, 0, ';'), 0);
    EXPECT_EQ(used, 0u);
    used = notStored;
    EXPECT_EQ(value.visualize(4, memory, 1, &used, 0, ';'), 0);
    EXPECT_EQ(used, 0u);
    EXPECT_EQ(memory[0], '\x5A');
    EXPECT_EQ(value.visualize(0, memory, 0, &used, 0, ';'), -1);
    EXPECT_EQ(value.visualize(4, nullptr, 1, &used, 0, ';'), -19);
}

}  // namespace
}  // namespace zrp_test
