// Unpacks msgpack arrays into records, value by value: a parser calls the visitor, which keeps
// track of the structure it is in. Layouts of structures come from the tests' tables.
#pragma once

#include <array>
#include <msgpack.hpp>
#include <vector>

#include "bench/peers/record_access.h"
#include "tests/oracle/catalogue.h"

namespace zrp_bench::pack {

struct Layout;

struct Slot {
    enum class Kind : uint8_t { unsignedInteger, signedInteger, text, bytes, structure, choice };

    Kind kind;
    bool isTrailing;  ///< bytes behind the record, whose capacity only the caller knows
    uint32_t offset;
    uint32_t size;
    uint32_t number;  ///< of a member of a union
    zrp_oracle::Place governor;
    const Layout* nested;
};

/// What the array of a structure holds, or the members of a union.
struct Layout {
    std::vector<Slot> slots;
};

/// Made once for each type; not timed.
const Layout& layoutOf(const zrp_oracle::Type& type);

class RecordVisitor : public msgpack::null_visitor {
  public:
    RecordVisitor(const Layout& layout, char* record, size_t trailingCapacity)
        : root_(layout), record_(record), trailingCapacity_(trailingCapacity) {}

    bool start_array(uint32_t count) {
        if (depth_ == 0) {
            return enter(root_, record_, count);
        }
        char* record = nullptr;
        const Slot* const slot = take(record);
        if (slot == nullptr || slot->kind != Slot::Kind::structure) {
            return false;
        }
        if (slot->governor.width != 0) {
            storeInteger(record + slot->governor.offset, slot->governor.width, 1);
        }
        return enter(*slot->nested, record + slot->offset, count);
    }
    bool end_array() {
        --depth_;
        return true;
    }

    /// An optional structure that is absent.
    bool visit_nil() {
        char* record = nullptr;
        const Slot* const slot = take(record);
        if (slot == nullptr || slot->governor.width == 0) {
            return false;
        }
        storeInteger(record + slot->governor.offset, slot->governor.width, 0);
        return true;
    }

    bool visit_positive_integer(uint64_t value) {
        char* record = nullptr;
        const Slot* const slot = take(record);
        if (slot == nullptr) {
            return false;
        }
        const bool isSigned = slot->kind == Slot::Kind::signedInteger;
        if (!isSigned && slot->kind != Slot::Kind::unsignedInteger) {
            return false;
        }
        const unsigned bits = slot->size * 8 - (isSigned ? 1 : 0);
        if (bits < 64 && value >> bits != 0) {
            return false;
        }
        storeInteger(record + slot->offset, slot->size, value);
        return true;
    }
    bool visit_negative_integer(int64_t value) {
        char* record = nullptr;
        const Slot* const slot = take(record);
        if (slot == nullptr || slot->kind != Slot::Kind::signedInteger) {
            return false;
        }
        if (slot->size < 8 && value < -(int64_t{1} << (slot->size * 8 - 1))) {
            return false;
        }
        storeInteger(record + slot->offset, slot->size, static_cast<uint64_t>(value));
        return true;
    }

    bool visit_str(const char* from, uint32_t size) {
        char* record = nullptr;
        const Slot* const slot = take(record);
        if (slot == nullptr || slot->kind != Slot::Kind::text || size >= slot->size) {
            return false;
        }
        memcpy(record + slot->offset, from, size);
        record[slot->offset + size] = '\0';
        return true;
    }
    bool visit_bin(const char* from, uint32_t size) {
        char* record = nullptr;
        const Slot* const slot = take(record);
        if (slot == nullptr || slot->kind != Slot::Kind::bytes) {
            return false;
        }
        const bool isCounted = slot->governor.width != 0;
        const size_t capacity = slot->isTrailing ? trailingCapacity_ : slot->size;
        if (size > capacity || (!isCounted && size != capacity)) {
            return false;
        }
        memcpy(record + slot->offset, from, size);
        if (isCounted) {
            storeInteger(record + slot->governor.offset, slot->governor.width, size);
        }
        return true;
    }

    // Nothing else occurs in these messages.
    bool visit_boolean(bool) { return false; }
    bool visit_float32(float) { return false; }
    bool visit_float64(double) { return false; }
    bool visit_ext(const char*, uint32_t) { return false; }
    bool start_map(uint32_t) { return false; }

  private:
    struct Level {
        const Slot* next;
        const Slot* end;
        char* record;
    };

    bool enter(const Layout& layout, char* record, size_t count) {
        if (depth_ == levels_.size() || count != layout.slots.size()) {
            return false;
        }
        levels_[depth_++] = {layout.slots.data(), layout.slots.data() + count, record};
        return true;
    }

    /// The slot of the value that comes now, null when there is none; of a union, the slot of the
    /// member that its selector names.
    const Slot* take(char*& record) {
        if (depth_ == 0) {
            return nullptr;
        }
        Level& level = levels_[depth_ - 1];
        if (level.next == level.end) {
            return nullptr;
        }
        const Slot* const slot = level.next++;
        record = level.record;
        if (slot->kind != Slot::Kind::choice) {
            return slot;
        }
        const uint64_t selector = zrp_oracle::valueAt(record, slot->governor);
        record += slot->offset;
        for (const Slot& member : slot->nested->slots) {
            if (member.number == selector) {
                return &member;
            }
        }
        return nullptr;
    }

    static void storeInteger(char* to, size_t width, uint64_t value) {
        switch (width) {
            case 1:
                *to = static_cast<char>(value);
                break;
            case 2:
                store<uint16_t>(to, value);
                break;
            case 4:
                store<uint32_t>(to, value);
                break;
            default:
                store<uint64_t>(to, value);
        }
    }
    template <class Integer>
    static void store(char* to, uint64_t value) {
        const Integer narrow = static_cast<Integer>(value);
        memcpy(to, &narrow, sizeof(narrow));
    }

    const Layout& root_;
    char* record_;
    size_t trailingCapacity_;
    std::array<Level, 8> levels_;
    size_t depth_ = 0;
};

}  // namespace zrp_bench::pack
