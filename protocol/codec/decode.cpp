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

/// A structure or a union that is being read.
struct Level {
    char* value;
    uint64_t end;  ///< offset in the input; in 64 bits, so that a length means the same everywhere
    const FieldData* field;  ///< which field of the level outside it is; the outermost is none
    uint32_t seen;           ///< presence bits of the fields that were met
    uint32_t number;         ///< the last field that was met
    uint8_t type;
    bool isUnion;
    bool isRead;  ///< whether a field was met

    /// A union has one field, whatever its length says.
    bool isAtEnd(uint64_t consumed) const { return isUnion ? isRead : consumed >= end; }

    void keepPresence() const {
        if (!isUnion) {
            store(value + tableOf(type).presenceOffset, seen);
        }
    }
};

/// Reads a tag and the value behind it; a nested value is only entered.
template <class Source>
ZRP_INLINE int decodeNext(const TableData& table, Level& level, Source& source) {
    uint32_t tag = 0;
    if (const int result = source.tag(tag); result != 0) {
        return result;
    }
    level.number = BrxTLVUtil::getFieldId(tag);
    level.isRead = true;
    const FieldData* const field = table.find(level.number);
    if (field == nullptr) {
        return source.skip(BrxTLVUtil::getTypeId(tag));
    }
    level.seen |= field->presenceBit;
    return decodeField(*field, level.value, source);
}

/// The same through CheckedSource, for what `quick` does not expect.
ZRP_SELDOM int decodeNextChecked(Level& level, QuickSource& quick, const char* at) {
    BrxReadBuf buf(quick.input.begin, quick.input.size);
    buf.position = quick.input.offsetOf(at);
    CheckedSource source(buf, quick.varint);
    const int result = decodeNext(tableOf(level.type), level, source);
    quick.at = quick.input.begin + buf.position;
    quick.entered = source.entered;
    return result;
}

/// Reads fields until one fails or is nested or the level ends.
int decodeFields(Level& level, QuickSource& source) {
    // Copies that nothing points at stay in registers.
    const TableData table = tableOf(level.type);
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
    } while (result == 0 && source.entered.field == nullptr && !now.isUnion &&
             source.at < source.until);
    level = now;
    return result;
}

/// Reads from the outermost level on; `*selector` is where a union's goes.
int decodeLevels(Level outermost, long long* selector, QuickSource& source) {
    Level levels[CatalogueData::mostLevels];
    levels[0] = outermost;
    Level* level = levels;
    const auto endOf = [&](const Level& of) {
        const Input& input = source.input;
        return input.begin + (of.end < input.size ? static_cast<size_t>(of.end) : input.size);
    };
    source.until = endOf(*level);
    int result = 0;
    while (result == 0) {
        const uint64_t consumed = source.input.offsetOf(source.at);
        if (!level->isAtEnd(consumed)) {
            result = decodeFields(*level, source);
            if (const FieldData* const field = source.entered.field; field != nullptr) {
                const uint64_t end = source.input.offsetOf(source.at) + source.entered.length;
                const bool isUnion = field->kind() == Kind::selectedUnion;
                char* const value = level->value + field->offset();
                *++level = {value, end, field, 0, 0, field->nestedType, isUnion, false};
                source.until = endOf(*level);
            }
        } else if (consumed > level->end) {
            result = Quorva::BRX_ERR_LENGTH_MISMATCH;
        } else if (level == levels) {
            break;
        } else {
            // No field of the catalogue is required, so none can be missing here.
            level->keepPresence();
            const Level& inside = *level--;
            governNested(*inside.field, level->value, inside.number);
            source.until = endOf(*level);
        }
    }
    if (result == 0 && outermost.isUnion) {
        *selector = levels[0].number;
    }
    for (const Level* open = levels; open <= level; ++open) {
        open->keepPresence();
    }
    return result;
}

/// The outermost level for `length` bytes behind the first `consumed`.
Level outermost(uint8_t type, char* value, uint32_t seen, uint64_t consumed, uint64_t length) {
    return {value, consumed + length, nullptr, seen, 0, type, tableOf(type).isUnion, false};
}

}  // namespace

DecodeStep decodeShared(uint8_t type, char* value, long long* selector, const Input& input,
                        const char* at, uint64_t length, bool varint) {
    QuickSource source(input, at, varint);
    const int result =
        decodeLevels(outermost(type, value, 0, input.offsetOf(at), length), selector, source);
    return {source.at, result};
}

DecodeStep finishShared(uint8_t type, char* record, uint32_t seen, const Input& input,
                        const char* at, const char* until, bool varint) {
    QuickSource source(input, at, varint);
    const int result =
        decodeLevels(outermost(type, record, seen, input.offsetOf(until), 0), nullptr, source);
    return {source.at, result};
}

int decodeShared(uint8_t type, char* value, long long* selector, BrxReadBuf& buf, uint64_t length,
                 bool varint) {
    if (buf.position > buf.length) {
        // A broken buffer: the first read reports it.
        Level level = outermost(type, value, 0, buf.position, length);
        level.keepPresence();
        CheckedSource source(buf, varint);
        return level.isAtEnd(buf.position) ? 0 : decodeNext(tableOf(type), level, source);
    }
    const char* const at = buf.beginPtr + buf.position;
    const size_t remaining = buf.length - buf.position;
    const char* const end = at + (length < remaining ? static_cast<size_t>(length) : remaining);
    const Input input(buf.beginPtr, buf.length, end, varint);
    const DecodeStep step = decodeShared(type, value, selector, input, at, length, varint);
    buf.position = input.offsetOf(step.at);
    return step.result;
}

}  // namespace quorva_zrp::codec
