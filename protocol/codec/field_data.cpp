#include "protocol/codec/field_data.h"

#include "protocol/codec/table.h"
#include "protocol/fields/frames.h"

namespace quorva_zrp::codec {

namespace {

// --- From rows to data --------------------------------------------------------------------------

template <class Row>
constexpr FieldData dataOf() {
    using Type = typename Row::type;
    static_assert(Row::offset() <= UINT16_MAX && Row::capacity() <= UINT16_MAX &&
                      Row::Governor::offset <= UINT16_MAX && Row::Governor::size <= 4,
                  "a row fits its data");
    FieldData field{};
    field.fieldNumber = Row::number();
    field.fieldOffset = static_cast<uint16_t>(Row::offset());
    field.elements = static_cast<uint16_t>(Row::capacity());
    field.governorOffset = static_cast<uint16_t>(Row::Governor::offset);
    field.governorSize = static_cast<uint8_t>(Row::Governor::size);
    field.fieldKind = Row::kind();
    if constexpr (Row::kind() == Kind::integer) {
        field.integerSize = sizeof(Type);
        field.integerIsSigned = std::is_signed_v<Type>;
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

/// The tables of these types, and the rows of all of them one after another.
template <class... Message>
struct CatalogueData {
    static constexpr size_t fieldCount = (size_t{0} + ... + Fields<Message>::Rows::count);

    FieldData fields[fieldCount]{};
    TableData tables[sizeof...(Message)]{};

    constexpr CatalogueData(TypeList<Message...>) { (add<Message>(), ...); }

  private:
    uint16_t nextField_ = 0;
    size_t nextTable_ = 0;

    template <class Next>
    constexpr void add() {
        constexpr uint8_t count = Fields<Next>::Rows::count;
        tables[nextTable_++] = {nextField_, presenceOffset<Next>(), count};
        addRows(typename Fields<Next>::Rows{});
    }
    template <class... Row>
    constexpr void addRows(RowList<Row...>) {
        ((fields[nextField_++] = dataOf<Row>()), ...);
    }
};

template <class... Message>
CatalogueData(TypeList<Message...>) -> CatalogueData<Message...>;

// The type is named first: g++ 12 puts a constant of a deduced class type into writable memory.
using CatalogueTables = decltype(CatalogueData{Catalogue{}});
constexpr CatalogueTables catalogue{Catalogue{}};

}  // namespace

// --- Lookup -------------------------------------------------------------------------------------

const TableData& tableOf(uint8_t type) {
    return catalogue.tables[type];
}

const FieldData* TableData::begin() const {
    return catalogue.fields + firstField;
}

const FieldData* TableData::find(uint32_t number) const {
    // Most structures number their fields from 1 without gaps.
    const FieldData* const fields = begin();
    if (number - 1 < fieldCount && fields[number - 1].fieldNumber == number) {
        return fields + (number - 1);
    }
    for (const FieldData& field : *this) {
        if (field.fieldNumber == number) {
            return &field;
        }
    }
    return nullptr;
}

}  // namespace quorva_zrp::codec
