#include "protocol/codec/field_data.h"

namespace quorva_zrp::codec {

namespace {

// --- From rows to data --------------------------------------------------------------------------

template <class Row>
constexpr FieldData dataOf() {
    using Type = typename Row::type;
    static_assert(Row::number() <= UINT16_MAX && Row::presenceBit <= UINT16_MAX &&
                      Row::offset() <= UINT16_MAX && Row::capacity() <= UINT16_MAX &&
                      Row::Governor::offset <= UINT16_MAX && Row::Governor::size <= 4 &&
                      Row::Default::textSize <= longestDefaultText &&
                      Row::Default::value <= UINT16_MAX,
                  "a row fits its data");
    FieldData field{};
    field.fieldNumber = static_cast<uint16_t>(Row::number());
    field.presenceBit = static_cast<uint16_t>(Row::presenceBit);
    field.fieldOffset = static_cast<uint16_t>(Row::offset());
    field.elements = static_cast<uint16_t>(Row::capacity());
    field.governorOffset = static_cast<uint16_t>(Row::Governor::offset);
    field.governorSize = static_cast<uint8_t>(Row::Governor::size);
    field.fieldKind = Row::kind();
    field.wireTypes[0] = wireTypeOf<Type>(false);
    field.wireTypes[1] = wireTypeOf<Type>(true);
    if constexpr (Row::kind() == Kind::integer) {
        field.integerSize = sizeof(Type);
        field.integerIsSigned = std::is_signed_v<Type>;
        field.defaultInteger = Row::Default::value;
    } else if constexpr (Row::kind() == Kind::text) {
        for (size_t i = 0; i < Row::Default::textSize; ++i) {
            field.defaultText[i] = Row::Default::text[i];
        }
    } else if constexpr (Row::kind() == Kind::structure || Row::kind() == Kind::selectedUnion) {
        field.nestedType = typeIndex<Type>;
    }
    return field;
}

template <class Message>
constexpr uint16_t presenceOffset() {
    if constexpr (std::is_union_v<Message>) {
        return 0;
    } else {
        return offsetof(Message, presence);
    }
}

/// Whether what a value of this type takes depends on a union in it or on bytes behind it.
template <class Message>
constexpr bool hasChoices() {
    const auto depends = []<class Row>(Row) {
        if constexpr (Row::kind() == Kind::structure) {
            return hasChoices<typename Row::type>();
        } else {
            return Row::kind() == Kind::selectedUnion || Row::kind() == Kind::trailingBytes;
        }
    };
    return [&]<class... Row>(RowList<Row...>) {
        return (depends(Row{}) || ...);
    }(typename Fields<Message>::Rows{});
}

/// Puts the rows of a type into `fields`, from `next` on.
template <class... Row>
constexpr void addRows(FieldData* fields, uint16_t& next, RowList<Row...>) {
    ((fields[next++] = dataOf<Row>()), ...);
}

template <class Message>
constexpr void addType(CatalogueData& data, uint16_t& next) {
    using Rows = typename Fields<Message>::Rows;
    TableData& table = data.tables[typeIndex<Message>];
    table.firstField = next;
    table.presenceOffset = presenceOffset<Message>();
    table.largestVarint = Fields<Message>::largestBody(true);
    table.largestFixed = Fields<Message>::largestBody(false);
    table.firstNumber = Rows::template At<Rows::count - 1>::number() - (Rows::count - 1);
    table.fieldCount = Rows::count;
    table.isUnion = std::is_union_v<Message>;
    table.hasChoices = hasChoices<Message>();
    addRows(data.fields, next, Rows{});
}

template <class... Message>
constexpr CatalogueData makeCatalogue(TypeList<Message...>) {
    CatalogueData data{};
    uint16_t next = 0;
    (addType<Message>(data, next), ...);
    return data;
}

}  // namespace

constexpr CatalogueData catalogue = makeCatalogue(Catalogue{});

}  // namespace quorva_zrp::codec
