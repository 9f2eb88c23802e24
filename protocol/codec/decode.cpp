#include "protocol/codec/decode.h"

namespace quorva_zrp::codec {

using Quorva::BrxTLVUtil;
using Quorva::brx_detail::byteAt;

// Nested values are entered by the loop below, not by calls: the stack that decoding takes does not
// grow with the nesting of the input.

int decodeNested(const FieldData& field, char*, QuickSource& source, uint32_t length) {
    source.entered = &field;
    source.enteredLength = length;
    return 0;
}

int decodeNested(const FieldData& field, char*, CheckedSource& source, uint32_t length) {
    source.entered = &field;
    source.enteredLength = length;
    return 0;
}

namespace {

/// A structure or a union that is being read. Small, since as many lie on the stack as a message
/// has levels.
struct Level {
    uint64_t end;  ///< offset in the input; in 64 bits, so that a length means the same everywhere
    uint32_t number;  ///< the last field that was met
    uint16_t seen;    ///< presence bits of the fields that were met
    uint8_t type;
    uint8_t field;  ///< which of the fields of the level outside it is

    const TableData& table() const { return tableOf(type); }

    void keepPresence(char* value) const {
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

/// Reads a tag and the value behind it; a nested value is only entered. With `Care::certain` a
/// field that comes twice is a surprise: however often it came, it would be read again.
template <class Source>
ZRP_INLINE int decodeNext(const TableData& table, Level& level, char* value, Source& source,
                          Care care) {
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
    if (care == Care::certain && (level.seen & field->presenceBit) != 0) {
        return surprise;
    }
    level.seen = static_cast<uint16_t>(level.seen | field->presenceBit);
    return decodeField(*field, value, source);
}

/// The same through CheckedSource.
ZRP_SELDOM int decodeNextChecked(Level& level, char* value, CheckedSource& source) {
    return decodeNext(level.table(), level, value, source, Care::exact);
}

/// The same for what `quick` does not expect at `at`.
ZRP_SELDOM int decodeSurprise(Level& level, char* value, QuickSource& quick, const char* at) {
    CheckedSource source(quick.input.begin, quick.input.size, quick.input.offsetOf(at),
                         quick.varint);
    const int result = decodeNextChecked(level, value, source);
    quick.at = quick.input.begin + source.buf.position;
    quick.entered = source.entered;
    quick.enteredLength = source.enteredLength;
    return result;
}

/// Reads fields until one fails or is nested or the level ends.
int decodeFields(Level& level, char* value, QuickSource& source, Care care) {
    const TableData& table = level.table();
    Level now = level;  // a copy that nothing points at stays in registers
    int result = 0;
    source.entered = nullptr;
    do {
        const char* const start = source.at;
        result = care == Care::exact ? int{surprise} : decodeNext(table, now, value, source, care);
        if (result == surprise && care != Care::certain) {
            level = now;
            result = decodeSurprise(level, value, source, start);
            now = level;
        }
    } while (result == 0 && source.entered == nullptr && !table.isUnion &&
             source.at < source.until);
    level = now;
    return result;
}

/// Where reading in a level ends: not behind the input.
const char* untilOf(const Level& level, const Input& input) {
    return input.begin + (level.end < input.size ? static_cast<size_t>(level.end) : input.size);
}

/// Goes into the nested value of `value` that `source` has come to, which becomes `value`.
void enter(Level*& level, char*& value, QuickSource& source) {
    const FieldData& field = *source.entered;
    const auto index = static_cast<uint8_t>(&field - level->table().begin());
    const uint64_t end = source.input.endOf(source.at, source.enteredLength);
    *++level = {end, 0, 0, field.nestedType, index};
    value += field.offset();
    source.until = untilOf(*level, source.input);
}

/// Comes back from a nested value. Returns which field of `value`, the one outside, it is.
const FieldData& leave(Level*& level, char*& value) {
    level->keepPresence(value);
    const uint8_t index = level->field;
    --level;
    const FieldData& field = level->table().begin()[index];
    value -= field.offset();
    return field;
}

}  // namespace

// Not by takeTag, which reads on for the number: here only the wire type matters, and the first
// byte has that.
const char* skipField(const char* at, const char* until) {
    const uint32_t first = byteAt(at, 0);
    if (first >= 0x80 && until - at >= 2 + mostForSure && byteAt(at, 1) < 0x80) [[likely]] {
        return skipSureValue(first & 0xF, at + 2, until);
    }
    const char* value = at + 1;
    if (first >= 0x80) {
        if (until - at < 3) {
            return nullptr;
        }
        value = at + 2;
        if (byteAt(at, 1) >= 0x80) {
            // A third group of zero would make it a tag in more groups than it needs.
            if (byteAt(at, 2) == 0 || byteAt(at, 2) >= 0x80) {
                return nullptr;
            }
            value = at + 3;
        }
    }
    return skipChecked(first & 0xF, value, until);
}

// No field of the catalogue is required, so none can be missing.
DecodeStep decodeShared(Reading reading, char* value, const char* at, size_t room,
                        const char* lastVarint, uint64_t length) {
    QuickSource source({at, room, lastVarint}, reading.varint);
    const Input& input = source.input;
    Level levels[CatalogueData::mostLevels];
    Level* level = levels;
    *level = {length, 0, 0, reading.type, 0};
    source.until = untilOf(*level, input);
    int result = 0;
    while (result == 0) {
        const uint64_t consumed = input.offsetOf(source.at);
        if (!isAtEnd(*level, consumed)) {
            result = decodeFields(*level, value, source, reading.care);
            if (source.entered != nullptr) {
                enter(level, value, source);
            }
        } else if (consumed > level->end) {
            result = Quorva::BRX_ERR_LENGTH_MISMATCH;
        } else if (level != levels) {
            const uint32_t number = level->number;
            const FieldData& field = leave(level, value);
            governNested(field, value, number);
            source.until = untilOf(*level, input);
        } else {
            break;
        }
    }
    while (level != levels) {
        (void)leave(level, value);
    }
    level->keepPresence(value);
    return {source.at, result, level->number};
}

int decodeShared(Reading reading, char* value, long long* selector, BrxReadBuf& buf,
                 uint64_t length) {
    if (buf.position > buf.length) {
        // A broken buffer: the first read reports it.
        Level level = {buf.position + length, 0, 0, reading.type, 0};
        level.keepPresence(value);
        if (isAtEnd(level, buf.position)) {
            return buf.position > level.end ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : 0;
        }
        CheckedSource source(buf.beginPtr, buf.length, buf.position, reading.varint);
        return decodeNextChecked(level, value, source);
    }
    const char* const at = buf.beginPtr + buf.position;
    const size_t room = buf.length - buf.position;
    // What ends where it would wrap ends before it begins: of an envelope that declares less than
    // itself, for one.
    const bool endsBefore = buf.position + length < length;
    const uint64_t declared = endsBefore ? 0 : length;
    // Behind what is declared there may be no memory, whatever the size of the buffer. Step by step
    // no varint is loaded whole.
    const size_t there = declared < room ? static_cast<size_t>(declared) : room;
    const bool isQuick = reading.care != Care::exact && there != 0;
    DecodeStep step = decodeShared(reading, value, at, room,
                                   isQuick ? lastVarint(at, at + there - 1) : at, declared);
    if (endsBefore && step.result == 0) {
        step.result = Quorva::BRX_ERR_LENGTH_MISMATCH;
    }
    buf.position += static_cast<size_t>(step.at - at);
    if (step.result == 0 && selector != nullptr) {
        *selector = step.number;
    }
    return step.result;
}

DecodeStep decodeApart(Reading reading, char* nested, const char* at, const char* last,
                       const char* lastVarint) {
    const size_t length = static_cast<size_t>(last + 1 - at);
    return decodeShared(reading, nested, at, length, lastVarint, length);
}

}  // namespace quorva_zrp::codec
