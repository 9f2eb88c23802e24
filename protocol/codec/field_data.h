// Field tables as data, for the parts of the engine that go step by step: one row per field, the
// rows of all types in one array, nested types by index. No pointers, so that the tables need no
// relocation and stay in read-only memory.
#pragma once

#include <algorithm>

#include "protocol/codec/table.h"
#include "protocol/fields/frames.h"

namespace quorva_zrp::codec {

// --- Types by index -----------------------------------------------------------------------------

template <class... Message>
struct TypeList {
    static constexpr size_t count = sizeof...(Message);

    template <class Wanted>
    static constexpr uint8_t indexOf() {
        size_t index = 0;
        (void)((!std::is_same_v<Message, Wanted> && ++index != 0) && ...);
        static_assert((std::is_same_v<Message, Wanted> || ...), "the type is in the catalogue");
        return static_cast<uint8_t>(index);
    }
};

/// Every message type; its place here is its index.
using Catalogue =
    TypeList<TZRPBase, TVESKRawDHReq, TVESKRawDHRsp, TVESKEncDHInfo, TVESKKey, TZRPKeyReq,
             TZRPKeyRsp, TVESKIDValue, TVESKAccount, TVESKAuthData, O2AuthData, TZRPAuthReqBody,
             TZRPAuthRspBody, TZRPAckBody, TZRPAuthRefreshReq, TZRPAuthRefreshNotifyBody, TZRPRelay,
             TZRPRelayReqBody, SpecifyZoneRouteInfo, SpecifyServerRouteInfo, SpecifyNameRouteInfo,
             TZRPRouteInfo, TZRPRouteChangeBody, TZRPSynHead, TZRPAckHead, TZRPBingoBody,
             TZRPDataHead, TZRPWaitBody, TZRPCStopBody, TZRPSStopBody, TZRPExtHead, TZRPBody,
             TZRPHead, TZRPFrame, TZRPInFrame>;

template <class Message>
constexpr uint8_t typeIndex = Catalogue::indexOf<Message>();

// --- Fields -------------------------------------------------------------------------------------

/// Bytes for a default text in a row of data, NUL included.
constexpr size_t longestDefaultText = 3;

/// A row of a table at run time. Its functions are those of Row.
struct FieldData {
    uint16_t fieldNumber;
    uint16_t fieldOffset;
    uint16_t elements;        ///< capacity of an array
    uint16_t governorOffset;  ///< where the governor lies in the record
    uint16_t defaultInteger;  ///< what construct() gives an integer
    uint16_t presenceBit;     ///< structures only
    uint8_t governorSize;     ///< bytes of the governor, 0 for none
    uint8_t nestedType;       ///< type index of a nested structure or union
    Kind fieldKind;
    uint8_t integerSize;  ///< bytes of an integer
    bool integerIsSigned;
    uint8_t wireTypes[2];                  ///< without varints and with them
    char defaultText[longestDefaultText];  ///< what construct() gives a text

    size_t offset() const { return fieldOffset; }
    Kind kind() const { return fieldKind; }
    size_t capacity() const { return elements; }
    bool isGoverned() const { return governorSize != 0; }
    bool mayBeAbsent() const { return isGoverned() && fieldKind != Kind::selectedUnion; }
    uint32_t tag(bool varint) const { return makeTag(fieldNumber, wireTypes[varint ? 1 : 0]); }

    uint64_t governor(const char* record) const {
        const char* const from = record + governorOffset;
        switch (governorSize) {
            case 1:
                return load<uint8_t>(from);
            case 2:
                return load<uint16_t>(from);
            default:
                return load<uint32_t>(from);
        }
    }
    void setGovernor(char* record, uint64_t value) const {
        char* const to = record + governorOffset;
        switch (governorSize) {
            case 1:
                return store(to, static_cast<uint8_t>(value));
            case 2:
                return store(to, static_cast<uint16_t>(value));
            // unreachable: 4 bytes count what lies behind a record, of which nothing is stored
            default:
                return store(to, static_cast<uint32_t>(value));
        }
    }

    template <class Use>
    int withIntegerType(Use use) const {
        switch (integerSize) {
            case 1:
                return use(uint8_t{});  // the sign of a byte shows nowhere on the wire
            case 2:
                return use(uint16_t{});
            case 4:
                return integerIsSigned ? use(int32_t{}) : use(uint32_t{});
            default:
                return integerIsSigned ? use(int64_t{}) : use(uint64_t{});
        }
    }
};

/// A type's fields as data.
struct TableData {
    uint16_t firstField;
    uint16_t presenceOffset;  ///< structures only
    uint16_t largestVarint;   ///< the most bytes the fields take, bytes behind the record aside
    uint16_t largestFixed;
    uint16_t firstNumber;  ///< the field at an index has this number more, most times
    uint8_t fieldCount;
    bool isUnion;
    bool hasChoices;  ///< whether there is a union in it, at any depth, or bytes behind the record

    size_t largest(bool varint) const { return varint ? largestVarint : largestFixed; }

    const FieldData* begin() const;
    const FieldData* end() const { return begin() + fieldCount; }

    /// The field of this number, or null.
    const FieldData* find(uint32_t number) const;

    /// The member that this selector names, or null.
    const FieldData* findMember(long long selector) const {
        const uint64_t number = static_cast<uint64_t>(selector);
        return number <= UINT32_MAX ? find(static_cast<uint32_t>(number)) : nullptr;
    }

    /// Where the field of this number is, or `fieldCount`.
    uint32_t indexOf(uint32_t number) const;
};

/// The type of a nested value in a list, else an empty list.
template <class Row>
using NestedType = std::conditional_t<Row::isNested, TypeList<typename Row::type>, RowList<>>;

template <class... Message>
constexpr size_t fieldsOf(TypeList<Message...>) {
    return (size_t{0} + ... + Fields<Message>::Rows::count);
}

/// The most structures and unions that lie inside each other in any of these types or rows.
template <class... Row>
constexpr size_t levelsOf(RowList<Row...>);
template <class... Message>
constexpr size_t levelsOf(TypeList<Message...>) {
    return std::max({(1 + levelsOf(typename Fields<Message>::Rows{}))...});
}
template <class... Row>
constexpr size_t levelsOf(RowList<Row...>) {
    return std::max({size_t{0}, levelsOf(NestedType<Row>{})...});
}

/// The tables of all types in the order of the catalogue, and their fields one after another.
struct CatalogueData {
    static constexpr size_t fieldCount = fieldsOf(Catalogue{});
    /// Structures and unions inside each other, the outermost one counted.
    static constexpr size_t mostLevels = levelsOf(Catalogue{});

    TableData tables[Catalogue::count];
    FieldData fields[fieldCount];
};
extern const CatalogueData catalogue;

/// The table of the type with this index.
inline const TableData& tableOf(uint8_t type) {
    return catalogue.tables[type];
}

inline const FieldData* TableData::begin() const {
    return catalogue.fields + firstField;
}

inline uint32_t TableData::indexOf(uint32_t number) const {
    const FieldData* const fields = begin();
    const uint32_t expected = number - firstNumber;
    if (expected < fieldCount && fields[expected].fieldNumber == number) {
        return expected;
    }
    uint32_t index = 0;
    if (number > fields[fieldCount - 1].fieldNumber) {
        return fieldCount;  // as unknown fields are, most times
    }
    while (fields[index].fieldNumber < number) {
        ++index;
    }
    return fields[index].fieldNumber == number ? index : fieldCount;
}

inline const FieldData* TableData::find(uint32_t number) const {
    const uint32_t index = indexOf(number);
    return index != fieldCount ? begin() + index : nullptr;
}

}  // namespace quorva_zrp::codec
