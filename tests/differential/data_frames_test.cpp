// Frames of data, which are read at once where every tag and length is the one expected, and their
// heads alone: the library against the oracle, over what is close to them.
#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "tests/differential/agreement.h"
#include "tests/differential/wire_generator.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

struct Sort {
    const char* type;
    uint8_t route;
    bool varint;
};

/// A structure that holds integers alone, in an encoding: where its fields are, and the lengths
/// that count them.
struct Leaf {
    size_t begin;
    size_t end;
    std::vector<size_t> lengths;
};

uint32_t lengthAt(const Bytes& bytes, size_t place) {
    uint32_t length = 0;
    for (size_t i = 0; i < 4; ++i) {
        length = length << 8 | static_cast<uint8_t>(bytes[place + i]);
    }
    return length;
}

/// The bytes with other fields in a leaf, and lengths that are right.
Bytes withFields(Bytes bytes, const Leaf& leaf, const Bytes& fields) {
    const size_t before = leaf.end - leaf.begin;
    for (const size_t place : leaf.lengths) {
        putLength(bytes, place, lengthAt(bytes, place) - before + fields.size());
    }
    const auto at = [&bytes](size_t place) {
        return bytes.begin() + static_cast<ptrdiff_t>(place);
    };
    bytes.erase(at(leaf.begin), at(leaf.end));
    bytes.insert(at(leaf.begin), fields.begin(), fields.end());
    return bytes;
}

class DataFramesDifference : public testing::TestWithParam<Sort> {
  protected:
    const Sort sort_ = GetParam();
    const TypePair pair_{&messageType(sort_.type), &zrp_oracle::typeNamed(sort_.type)};
    const bool isFrame_ = pair_.library->name == std::string("TZRPInFrame");

    /// A frame or a head whose integers are noise, as the oracle encodes it.
    Bytes encoding(Random& random) const {
        TZRPInFrame frame;
        Bytes noise(sizeof(frame));
        random.fill(noise);
        memcpy(&frame, noise.data(), sizeof(frame));
        frame.stHead.stBase.wCommand = ZRP_CMD_DATA;
        frame.stHead.stExtend.stData.bRouteFlag = sort_.route;
        const void* const record = isFrame_ ? static_cast<const void*>(&frame) : &frame.stHead;
        Bytes encoded(sort_.varint ? TZRPInFrame_MAX_VARINT : TZRPInFrame_MAX_FIXED);
        size_t used = 0;
        EXPECT_EQ(0, zrp_oracle::pack(*pair_.oracle, record, 0, encoded.data(), encoded.size(),
                                      &used, sort_.varint));
        encoded.resize(used);
        return encoded;
    }

    /// Where the fields of the head are: behind the envelope, of a frame behind tag and length.
    size_t headAt() const { return isFrame_ ? 10 : 5; }

    /// The length of the message, and of a frame's head.
    std::vector<size_t> outerLengths() const {
        return isFrame_ ? std::vector<size_t>{1, 6} : std::vector<size_t>{1};
    }

    Leaf baseOf(const Bytes& bytes) const {
        const size_t begin = headAt() + 5;
        Leaf base{begin, begin + lengthAt(bytes, begin - 4), outerLengths()};
        base.lengths.push_back(begin - 4);
        return base;
    }

    /// The fields of the zone or of the server. In front of them are the tags and lengths of the
    /// extension, its data head, three bytes with tags, the route and the zone or the server.
    Leaf destinationOf(const Bytes& bytes) const {
        const size_t extension = baseOf(bytes).end;
        const size_t begin = extension + 5 + 7 + 6 + 5 + 5;
        Leaf destination{begin, begin + lengthAt(bytes, begin - 4), outerLengths()};
        for (const size_t place : {extension + 1, extension + 8, extension + 19, begin - 4}) {
            destination.lengths.push_back(place);
        }
        return destination;
    }

    /// The message, and its fields alone.
    testing::AssertionResult isTakenAlike(const Bytes& bytes, Random& random) const {
        const Difference whole = compareUnpack(pair_, randomTarget(pair_, random), bytes);
        const Difference fields = compareUnpackFields(pair_, randomTarget(pair_, random), bytes, 5,
                                                      bytes.size() - 5, sort_.varint);
        return agree(whole + fields);
    }
};

}  // namespace

TEST_P(DataFramesDifference, AnyValuesAreTakenAlike) {
    for (uint64_t seed = 0; seed < 200; ++seed) {
        Random random(seed);
        ASSERT_TRUE(isTakenAlike(encoding(random), random)) << seed;
    }
}

TEST_P(DataFramesDifference, AnyChangedByteIsTakenAlike) {
    Random random(1);
    const Bytes bytes = encoding(random);
    for (size_t place = 0; place < bytes.size(); ++place) {
        for (int change = 1; change <= UINT8_MAX; ++change) {
            Bytes changed = bytes;
            changed[place] = static_cast<char>(changed[place] ^ change);
            ASSERT_TRUE(isTakenAlike(changed, random));
        }
    }
}

TEST_P(DataFramesDifference, AnyFieldsOfTheBaseHeaderAreTakenAlike) {
    for (uint64_t seed = 0; seed < 2000; ++seed) {
        Random random(seed);
        const Bytes bytes = encoding(random);
        const Bytes fields =
            WireGenerator(random, sort_.varint).fields(zrp_oracle::typeNamed("TZRPBase"));
        ASSERT_TRUE(isTakenAlike(withFields(bytes, baseOf(bytes), fields), random)) << seed;
    }
}

TEST_P(DataFramesDifference, AnyFieldsOfTheDestinationAreTakenAlike) {
    const char* const type =
        sort_.route == ZRP_ROUTE_ZONE ? "SpecifyZoneRouteInfo" : "SpecifyServerRouteInfo";
    for (uint64_t seed = 0; seed < 2000; ++seed) {
        Random random(seed);
        const Bytes bytes = encoding(random);
        WireGenerator generator(random, sort_.varint);
        Bytes changed =
            withFields(bytes, destinationOf(bytes), generator.fields(zrp_oracle::typeNamed(type)));
        if (random.oneIn(2)) {
            changed = withFields(changed, baseOf(changed),
                                 generator.fields(zrp_oracle::typeNamed("TZRPBase")));
        }
        ASSERT_TRUE(isTakenAlike(changed, random)) << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(ToAZoneOrAServer, DataFramesDifference, testing::ValuesIn([] {
                             std::vector<Sort> sorts;
                             for (const char* const type : {"TZRPInFrame", "TZRPHead"}) {
                                 for (const uint8_t route : {ZRP_ROUTE_ZONE, ZRP_ROUTE_SERVER}) {
                                     sorts.push_back({type, route, false});
                                     sorts.push_back({type, route, true});
                                 }
                             }
                             return sorts;
                         }()));

}  // namespace zrp_test
