#include <limits.h>
#include <stdio.h>

#include <string>

#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_oracle {

namespace {

using zrp_test::PrintCall;

/// One dump on its way: where it goes and how, and what the formatting functions were told.
struct Dump {
    OutputCursor& out;
    char separator;
    PrintLog& log;
};

const char* formatOf(Kind kind) {
    switch (kind) {
        case Kind::uint8:
        case Kind::char8:
            return "0x%02x";
        case Kind::uint16:
        case Kind::int32:
            return "%d";
        case Kind::uint32:
            return "%u";
        case Kind::uint64:
            return sizeof(long) == 8 ? "%lu" : "%llu";
        default:
            return sizeof(long) == 8 ? "%ld" : "%lld";
    }
}

std::string hexadecimal(unsigned value) {
    char text[16];
    snprintf(text, sizeof(text), "0x%02x", value);
    return text;
}

std::string printedValue(const Field& field, const void* record) {
    switch (field.kind) {
        case Kind::uint8:
            return hexadecimal(static_cast<unsigned>(bitsOf(field, record)));
        case Kind::char8:
            // Widened with its sign: 0x80 shows as 0xffffff80.
            return hexadecimal(static_cast<unsigned>(signedValueOf(field, record)));
        case Kind::int32:
        case Kind::int64:
            return std::to_string(signedValueOf(field, record));
        default:
            return std::to_string(bitsOf(field, record));
    }
}

int nested(int indent) {
    return indent < 0 || indent == INT_MAX ? indent : indent + 1;
}

/// What every formatting function of the recorder does: it notes the call and writes the label and
/// the detail, with the separator behind them unless elements are to follow.
int call(Dump& dump, PrintCall::Kind kind, int indent, const Field& field, const char* format,
         const std::string& detail) {
    const bool fails = dump.log.calls.size() == dump.log.failingIndex;
    dump.log.calls.push_back({kind, indent, dump.separator, field.label, format, detail});
    if (fails) {
        return dump.log.failingResult;
    }
    std::string entry = field.label + detail;
    if (kind != PrintCall::Kind::array) {
        entry += dump.separator;
    }
    return dump.out.putText(entry);
}

int printText(const Field& field, const void* record, Dump& dump, int indent) {
    const size_t length = textLength(field, record);
    if (length == field.size) {
        return textTooLong;
    }
    return call(dump, PrintCall::Kind::text, indent, field, "",
                std::string(fieldIn(field, record), length));
}

int printBytes(const Field& field, const void* record, Dump& dump, int indent) {
    const uint64_t count = elementCount(field, record);
    int result = call(dump, PrintCall::Kind::array, indent, field, "", std::to_string(count));
    for (uint64_t i = 0; i < count && result == 0; ++i) {
        const uint8_t element = static_cast<uint8_t>(fieldIn(field, record)[i]);
        result = dump.out.putText(" " + hexadecimal(element));
    }
    return result != 0 ? result : dump.out.putCharAndNul(dump.separator);
}

int printFields(const Type& type, const void* record, long long selector, Dump& dump, int indent);

int printNested(const Field& field, const void* record, long long selector, Dump& dump,
                int indent) {
    const int result = call(dump, PrintCall::Kind::heading, indent, field, "", "");
    return result != 0
               ? result
               : printFields(*field.type, fieldIn(field, record), selector, dump, nested(indent));
}

int printField(const Field& field, const void* record, Dump& dump, int indent) {
    switch (field.kind) {
        case Kind::text:
            return printText(field, record, dump, indent);
        case Kind::bytes:
            return printBytes(field, record, dump, indent);
        case Kind::structure:
            return printNested(field, record, 0, dump, indent);
        case Kind::unionValue:
            return printNested(field, record, selectorOf(field, record), dump, indent);
        default:
            return call(dump, PrintCall::Kind::value, indent, field, formatOf(field.kind),
                        printedValue(field, record));
    }
}

int printFields(const Type& type, const void* record, long long selector, Dump& dump, int indent) {
    if (type.isUnion) {
        const Field* member = fieldNumbered(type, selector);
        return member != nullptr ? printField(*member, record, dump, indent) : 0;
    }
    for (const Field& field : type.fields) {
        if (field.isOptional() && isLeftOut(field, record)) {
            continue;
        }
        const int result = printField(field, record, dump, indent);
        if (result != 0) {
            return result;
        }
        if (exceedsBound(field, record)) {
            return referTooBig;
        }
    }
    return 0;
}

}  // namespace

int visualize(const Type& type, const void* record, long long selector, OutputCursor& out,
              int indent, char separator, PrintLog& log) {
    Dump dump{out, separator, log};
    return printFields(type, record, selector, dump, indent);
}

int visualizeInto(const Type& type, const void* record, long long selector, char* buffer,
                  size_t size, size_t* used, int indent, char separator, PrintLog& log) {
    if (buffer == nullptr) {
        return nullArgument;
    }
    OutputCursor out(buffer, size);
    const int result = visualize(type, record, selector, out, indent, separator, log);
    if (used != nullptr) {
        *used = out.used;
    }
    return result;
}

}  // namespace zrp_oracle
