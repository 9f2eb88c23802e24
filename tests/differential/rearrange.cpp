#include "tests/differential/rearrange.h"

#include <stdlib.h>

#include <algorithm>

#include "tests/differential/wire_generator.h"
#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_test {

using zrp_oracle::Field;
using zrp_oracle::Type;

namespace {

void require(int result) {
    if (result != 0) {
        abort();
    }
}

Bytes slice(const Bytes& bytes, size_t begin, size_t end) {
    return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                 bytes.begin() + static_cast<std::ptrdiff_t>(end));
}

}  // namespace

Bytes rearranged(const Type& type, const Bytes& fields, const Arrange& arrange) {
    std::vector<Bytes> parts;
    zrp_oracle::InputCursor in(fields.data(), fields.size());
    while (in.used < in.size) {
        const size_t begin = in.used;
        uint64_t tag = 0;
        uint64_t value = 0;
        require(in.takeVarint(tag, 32));
        const uint64_t typeId = tag % 16;
        if (typeId != 5) {
            require(typeId == 0 ? in.takeVarint(value, 64)
                                : in.takeBigEndian(value, size_t{1} << (typeId - 1)));
            parts.push_back(slice(fields, begin, in.used));
            continue;
        }
        const size_t lengthAt = in.used - begin;
        require(in.takeBigEndian(value, 4));
        Bytes part = slice(fields, begin, in.used);
        const size_t contentBegin = in.used;
        require(in.skip(static_cast<size_t>(value)));
        Bytes content = slice(fields, contentBegin, in.used);
        const Field* const row = zrp_oracle::fieldNumbered(type, static_cast<long long>(tag / 16));
        if (row != nullptr && row->type != nullptr) {
            content = rearranged(*row->type, content, arrange);
            putLength(part, lengthAt, content.size());
        }
        part.insert(part.end(), content.begin(), content.end());
        parts.push_back(part);
    }
    if (!type.isUnion) {
        arrange(parts);
    }
    Bytes out;
    for (const Bytes& part : parts) {
        out.insert(out.end(), part.begin(), part.end());
    }
    return out;
}

Bytes reversed(const Type& type, const Bytes& fields) {
    return rearranged(type, fields,
                      [](std::vector<Bytes>& parts) { std::reverse(parts.begin(), parts.end()); });
}

}  // namespace zrp_test
