// How the catalogue's tables are written: one FIELD row per field, one line per type. Included by
// the files that hold the tables, and by nothing else.
#pragma once

#include <stddef.h>

#include "protocol/quorva_zrp.h"
#include "tests/oracle/catalogue.h"

namespace zrp_oracle {

constexpr Field fieldRow(uint32_t number, Kind kind, const char* label, Place storage) {
    return {number, kind, label, storage.offset, storage.width};
}

constexpr Type structureTable(const char* name, size_t size, size_t presence,
                              std::span<const Field> fields) {
    return {name, false, size, presence, fields};
}

constexpr Type unionTable(const char* name, size_t size, std::span<const Field> fields) {
    return {name, true, size, 0, fields};
}

}  // namespace zrp_oracle

#define PLACE(Record, member) \
    (Place{offsetof(Record, member), sizeof(static_cast<Record*>(nullptr)->member)})

#define FIELD(Record, number, kind, member) \
    fieldRow(number, Kind::kind, "[" #member "]", PLACE(Record, member))

#define STRUCTURE(Record, rows)         \
    constinit const Type type##Record = \
        structureTable(#Record, sizeof(Record), offsetof(Record, presence), rows)

#define UNION(Record, rows) \
    constinit const Type type##Record = unionTable(#Record, sizeof(Record), rows)
