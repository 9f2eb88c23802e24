#include <algorithm>
#include <map>
#include <memory>

#include "bench/peers/msgpack_visitor.h"

namespace zrp_bench::pack {

namespace {

using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

Slot::Kind kindOf(Kind kind) {
    switch (kind) {
        case Kind::char8:
        case Kind::int32:
        case Kind::int64:
            return Slot::Kind::signedInteger;
        case Kind::text:
            return Slot::Kind::text;
        case Kind::bytes:
            return Slot::Kind::bytes;
        case Kind::structure:
            return Slot::Kind::structure;
        case Kind::unionValue:
            return Slot::Kind::choice;
        default:
            return Slot::Kind::unsignedInteger;
    }
}

/// Counts of byte arrays and flags of optional elements.
bool saysWhatFollows(const Field& field, const Type& type) {
    return std::any_of(type.fields.begin(), type.fields.end(), [&](const Field& other) {
        return (other.kind == Kind::bytes || other.isOptional()) && other.isGoverned() &&
               other.governor.offset == field.offset && other.governor.width == field.size;
    });
}

std::unique_ptr<Layout> layoutFor(const Type& type) {
    auto made = std::make_unique<Layout>();
    for (const Field& field : type.fields) {
        if (saysWhatFollows(field, type)) {
            continue;
        }
        made->slots.push_back({kindOf(field.kind), field.offset >= type.size,
                               static_cast<uint32_t>(field.offset),
                               static_cast<uint32_t>(field.size), field.number, field.governor,
                               field.type != nullptr ? &layoutOf(*field.type) : nullptr});
    }
    return made;
}

}  // namespace

const Layout& layoutOf(const Type& type) {
    static std::map<const Type*, std::unique_ptr<Layout>> known;
    const auto found = known.find(&type);
    if (found != known.end()) {
        return *found->second;
    }
    std::unique_ptr<Layout> made = layoutFor(type);
    return *(known[&type] = std::move(made));
}

}  // namespace zrp_bench::pack
