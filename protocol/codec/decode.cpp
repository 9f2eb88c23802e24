#include "protocol/codec/decode.h"

namespace quorva_zrp::codec {

using Quorva::BrxTLVUtil;

// Nested values are entered by the loop below, not by calls: the stack that decoding takes does not
// grow with the nesting of the input.

int decodeNested(const FieldData& field, char*, QuickSource& source, uint64_t length) {
    source.entered = {&field, length};
    return 0;
}

int decodeNested(const FieldData& field, char*, CheckedSource& source, uint64_t length) {
    source.entered = {&field, length};
    return 0;
}

namespace {

/// A structure or a union that is being read. Small, since as many lie on the stack as a message
/// has levels.
struct Level {
    char* value;
    uint64_t end;  ///< offset in the input; in 64 bits, so that a length means the same everywhere
    uint32_t number;  ///< the last field that was met
    uint16_t seen;    ///< presence bits of the fields that were met
    uint8_t type;
    uint8_t field;  ///< which of the fields of the level outside it is

    const TableData& table() const { return tableOf(type); }

    void keepPresence() const {
        if (!table().isUnion) {
            store(value + table().presenceOffset, uint32_t{seen});
        }
    }
};

/// In `seen` of a union: its field was read.
constexpr uint16_t isRead = 1;

/// Whether no more fields are to be read. A union has one field, whatever its length says.
bool isAtEnd(const Level& level, uint64_t consumed) {
    return level.table().isUnion ? level.seen == isRead : consumed >= level.end;
}

/// Reads a tag and the value behind it; a nested value is only entered.
template <class Source>
ZRP_INLINE int decodeNext(const TableData& table, Level& level, Source& source) {
    uint32_t tag = 0;
    if (const int result = source.tag(tag); result != 0) {
        return result;
    }
    level.number = BrxTLVUtil::getFieldId(tag);
    const FieldData* const field = table.find(level.number);
    if (table.isUnion) {
        level.seen = isRead;
    }
    if (field == nullptr) {
        return source.skip(BrxTLVUtil::getTypeId(tag));
    }
    level.seen = static_cast<uint16_t>(level.seen | field->presenceBit);
    return decodeField(*field, level.value, source);
}

/// The same through CheckedSource, for what `quick` does not expect.
ZRP_SELDOM int decodeNextChecked(Level& level, QuickSource& quick, const char* at) {
    BrxReadBuf buf(quick.input.begin, quick.input.size);
    buf.position = quick.input.offsetOf(at);
    CheckedSource source(buf, quick.varint);
    const int result = decodeNext(level.table(), level, source);
    quick.at = quick.input.begin + buf.position;
    quick.entered = source.entered;
    return result;
}

/// Reads fields until one fails or is nested or the level ends.
int decodeFields(Level& level, QuickSource& source) {
    // Copies that nothing points at stay in registers.
    const TableData table = level.table();
    Level now = level;
    int result = 0;
    source.entered.field = nullptr;
    do {
        const char* const start = source.at;
        result = decodeNext(table, now, source);
        if (result == surprise) {
            level = now;
            result = decodeNextChecked(level, source, start);
            now = level;
        }
    } while (result == 0 && source.entered.field == nullptr && !table.isUnion &&
             source.at < source.until);
    level = now;
    return result;
}

/// Where reading in a level ends: not behind the input.
const char* untilOf(const Level& level, const Input& input) {
    return input.begin + (level.end < input.size ? static_cast<size_t>(level.end) : input.size);
}

/// Goes into the nested value that `source` has come to.
void enter(Level*& level, QuickSource& source) {
    const FieldData& field = *source.entered.field;
    const uint64_t end = source.input.offsetOf(source.at) + source.entered.length;
    char* const value = level->value + field.offset();
    const auto index = static_cast<uint8_t>(&field - level->table().begin());
    *++level = {value, end, 0, 0, field.nestedType, index};
    source.until = untilOf(*level, source.input);
}

/// Comes back from a nested value. No field of the catalogue is required, so none can be missing.
void leave(Level*& level, QuickSource& source) {
    level->keepPresence();
    const Level& inside = *level--;
    governNested(level->table().begin()[inside.field], level->value, inside.number);
    source.until = untilOf(*level, source.input);
}

/// Reads a structure or union and all that is nested in it. `*selector` is where a union's goes.
int decodeLevels(const Level& outermost, long long* selector, QuickSource& source) {
    Level levels[CatalogueData::mostLevels];
    Level* level = levels;
    *level = outermost;
    source.until = untilOf(*level, source.input);
    int result = 0;
    while (result == 0) {
        const uint64_t consumed = source.input.offsetOf(source.at);
        if (!isAtEnd(*level, consumed)) {
            result = decodeFields(*level, source);
            if (source.entered.field != nullptr) {
                enter(level, source);
            }
        } else if (consumed > level->end) {
            result = Quorva::BRX_ERR_LENGTH_MISMATCH;
        } else if (level != levels) {
            leave(level, source);
        } else {
            break;
        }
    }
    if (result == 0 && level->table().isUnion) {
        *selector = level->number;
    }
    for (const Level* open = levels; open <= level; ++open) {
        open->keepPresence();
    }
    return result;
}

/// The outermost level, up to `end`.
Level outermost(uint8_t type, char* value, uint32_t seen, uint64_t end) {
    return {value, end, 0, static_cast<uint16_t>(seen), type, 0};
}

}  // namespace

DecodeStep decodeShared(uint8_t type, char* value, long long* selector, const Input& input,
                        const char* at, uint64_t length, bool varint) {
    QuickSource source(input, at, varint);
    const int result =
        decodeLevels(outermost(type, value, 0, input.offsetOf(at) + length), selector, source);
    return {source.at, result};
}

DecodeStep finishShared(uint8_t type, char* record, uint32_t seen, const Input& input,
                        const char* at, const char* until, bool varint) {
    QuickSource source(input, at, varint);
    const int result =
        decodeLevels(outermost(type, record, seen, input.offsetOf(until)), nullptr, source);
    return {source.at, result};
}

int decodeShared(uint8_t type, char* value, long long* selector, BrxReadBuf& buf, uint64_t length,
                 bool varint) {
    if (buf.position > buf.length) {
        // A broken buffer: the first read reports it.
        Level level = outermost(type, value, 0, buf.position + length);
        level.keepPresence();
        if (isAtEnd(level, buf.position)) {
            return buf.position > level.end ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : 0;
        }
        CheckedSource source(buf, varint);
        return decodeNext(level.table(), level, source);
    }
    const char* const at = buf.beginPtr + buf.position;
    const Input input(buf.beginPtr, buf.length);
    const DecodeStep step = decodeShared(type, value, selector, input, at, length, varint);
    buf.position = input.offsetOf(step.at);
    return step.result;
}

}  // namespace quorva_zrp::codec
