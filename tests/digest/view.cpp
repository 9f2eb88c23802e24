#include "tests/digest/view.h"

#include <string.h>

#include "tests/oracle/record.h"

namespace zrp_test {

using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

namespace {

class Viewer {
  public:
    explicit Viewer(Unions unions) : unions_(unions) {}

    void addStructure(const Type& type, const char* record) {
        for (const Field& field : type.fields) {
            addField(field, record);
        }
        addInteger(zrp_oracle::valueAt(record, {type.presence, sizeof(uint32_t)}));
    }

    void addMember(const Type& type, const char* record, long long selector) {
        const Field* const member = zrp_oracle::fieldNumbered(type, selector);
        if (member != nullptr) {
            addField(*member, record);
        }
    }

    Bytes bytes;

  private:
    void addField(const Field& field, const char* record) {
        const char* const storage = record + field.offset;
        switch (field.kind) {
            case Kind::text:
            case Kind::bytes:
                bytes.insert(bytes.end(), storage, storage + field.size);
                break;
            case Kind::structure:
                addStructure(*field.type, storage);
                break;
            case Kind::unionValue:
                if (unions_ == Unions::shown) {
                    addMember(*field.type, storage, zrp_oracle::selectorOf(field, record));
                }
                break;
            default:
                addInteger(zrp_oracle::bitsOf(field, record));
                break;
        }
    }

    void addInteger(uint64_t value) {
        for (unsigned shift = 64; shift > 0;) {
            shift -= 8;
            bytes.push_back(static_cast<char>(value >> shift));
        }
    }

    Unions unions_;
};

}  // namespace

Bytes viewOf(const Type& structure, const void* record, Unions unions) {
    Viewer viewer(unions);
    viewer.addStructure(structure, static_cast<const char*>(record));
    return std::move(viewer.bytes);
}

Bytes viewOfMember(const Type& unionType, const void* record, long long selector, Unions inside) {
    Viewer viewer(inside);
    viewer.addMember(unionType, static_cast<const char*>(record), selector);
    return std::move(viewer.bytes);
}

void clearUnions(const Type& type, void* record) {
    if (type.isUnion) {
        memset(record, 0, type.size);
        return;
    }
    for (const Field& field : type.fields) {
        if (field.type != nullptr) {
            clearUnions(*field.type, static_cast<char*>(record) + field.offset);
        }
    }
}

}  // namespace zrp_test
