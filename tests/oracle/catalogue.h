// The messages as plain tables, for the oracle's interpreter and for tests that build records and
// wire bytes. Nothing here comes from the library but the layout of its public records.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <span>

namespace zrp_oracle {

enum class Kind {
    uint8,
    char8,
    uint16,
    uint32,
    int32,
    uint64,
    int64,
    text,
    bytes,
    structure,
    unionValue,
};

struct Type;

/// An unsigned integer of 1, 2 or 4 bytes somewhere in a record; width 0 means there is none.
struct Place {
    size_t offset = 0;
    size_t width = 0;
};

/// A field of a structure or a member of a union.
struct Field {
    uint32_t number;
    Kind kind;
    const char* label;  ///< the name in square brackets
    size_t offset;
    size_t size;                 ///< bytes of storage; the capacity of texts and byte arrays
    const Type* type = nullptr;  ///< of a nested structure or union
    Place governor{};            ///< byte array: its count; union: its selector; optional: its flag
    bool hasBound = false;       ///< a count or flag that must not exceed `bound`
    uint64_t bound = 0;
    uint64_t startValue = 0;
    const char* startText = "";

    constexpr Field of(const Type& nested) const {
        Field changed = *this;
        changed.type = &nested;
        return changed;
    }
    constexpr Field governedBy(Place place) const {
        Field changed = *this;
        changed.governor = place;
        return changed;
    }
    constexpr Field atMost(uint64_t largest) const {
        Field changed = *this;
        changed.hasBound = true;
        changed.bound = largest;
        return changed;
    }
    constexpr Field startingAs(uint64_t value) const {
        Field changed = *this;
        changed.startValue = value;
        return changed;
    }
    constexpr Field startingAs(const char* content) const {
        Field changed = *this;
        changed.startText = content;
        return changed;
    }

    constexpr bool isGoverned() const { return governor.width != 0; }
    constexpr bool isOptional() const { return kind == Kind::structure && isGoverned(); }
};

struct Type {
    const char* name;
    bool isUnion;
    size_t size;
    size_t presence;  ///< offset of a structure's presence word
    std::span<const Field> fields;
};

/// All 35 types.
std::span<const Type* const> types();

/// The type of this name; ends the program when there is none.
const Type& typeNamed(const char* name);

/// The field with this number, null when the type has none.
const Field* fieldNumbered(const Type& type, long long number);

/// The value at a place of a record, and a change of it (cut to the place's width).
uint64_t valueAt(const void* record, Place place);
void setValueAt(void* record, Place place, uint64_t value);

extern const Type typeTZRPBase;
extern const Type typeTVESKRawDHReq;
extern const Type typeTVESKRawDHRsp;
extern const Type typeTVESKEncDHInfo;
extern const Type typeTVESKKey;
extern const Type typeTZRPKeyReq;
extern const Type typeTZRPKeyRsp;
extern const Type typeTVESKIDValue;
extern const Type typeTVESKAccount;
extern const Type typeTVESKAuthData;
extern const Type typeO2AuthData;
extern const Type typeTZRPAuthReqBody;
extern const Type typeTZRPAuthRspBody;
extern const Type typeTZRPAckBody;
extern const Type typeTZRPAuthRefreshReq;
extern const Type typeTZRPAuthRefreshNotifyBody;
extern const Type typeTZRPRelay;
extern const Type typeTZRPRelayReqBody;
extern const Type typeSpecifyZoneRouteInfo;
extern const Type typeSpecifyServerRouteInfo;
extern const Type typeSpecifyNameRouteInfo;
extern const Type typeTZRPRouteInfo;
extern const Type typeTZRPRouteChangeBody;
extern const Type typeTZRPSynHead;
extern const Type typeTZRPAckHead;
extern const Type typeTZRPBingoBody;
extern const Type typeTZRPDataHead;
extern const Type typeTZRPWaitBody;
extern const Type typeTZRPCStopBody;
extern const Type typeTZRPSStopBody;
extern const Type typeTZRPExtHead;
extern const Type typeTZRPBody;
extern const Type typeTZRPHead;
extern const Type typeTZRPFrame;
extern const Type typeTZRPInFrame;

}  // namespace zrp_oracle
