// Frames of data with integers of fixed width, which are read at once where every tag and length is
// the one expected: the library against the oracle, over all that is one byte away from them.
#include <gtest/gtest.h>
#include <string.h>

#include "tests/differential/agreement.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

class DataFramesDifference : public testing::TestWithParam<uint8_t> {
  protected:
    const TypePair pair_{&messageType("TZRPInFrame"), &zrp_oracle::typeNamed("TZRPInFrame")};

    /// A frame whose integers are noise, as the oracle encodes it.
    Bytes encoding(Random& random) const {
        TZRPInFrame frame;
        Bytes noise(sizeof(frame));
        random.fill(noise);
        memcpy(&frame, noise.data(), sizeof(frame));
        frame.stHead.stBase.wCommand = ZRP_CMD_DATA;
        frame.stHead.stExtend.stData.bRouteFlag = GetParam();
        Bytes encoded(TZRPInFrame_MAX_FIXED);
        size_t used = 0;
        EXPECT_EQ(0, zrp_oracle::pack(*pair_.oracle, &frame, 0, encoded.data(), encoded.size(),
                                      &used, false));
        encoded.resize(used);
        return encoded;
    }
};

}  // namespace

TEST_P(DataFramesDifference, AnyValuesAreTakenAlike) {
    for (uint64_t seed = 0; seed < 200; ++seed) {
        Random random(seed);
        const Bytes bytes = encoding(random);
        ASSERT_TRUE(agree(compareUnpack(pair_, randomTarget(pair_, random), bytes))) << seed;
    }
}

TEST_P(DataFramesDifference, AnyChangedByteIsTakenAlike) {
    Random random(1);
    const Bytes bytes = encoding(random);
    for (size_t place = 0; place < bytes.size(); ++place) {
        for (int change = 1; change <= UINT8_MAX; ++change) {
            Bytes changed = bytes;
            changed[place] = static_cast<char>(changed[place] ^ change);
            ASSERT_TRUE(agree(compareUnpack(pair_, randomTarget(pair_, random), changed)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ToAZoneOrAServer, DataFramesDifference,
                         testing::Values(ZRP_ROUTE_ZONE, ZRP_ROUTE_SERVER));

}  // namespace zrp_test
