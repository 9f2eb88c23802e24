// The structures and unions that have samples, for tests that go through all of them: every
// structure but TZRPFrame, and every union.
#pragma once

#include "tests/messages/frame_samples.h"

namespace zrp_test {

struct StructureName {
    template <class T>
    static std::string GetName(int) {
        return Sample<T>::name;
    }
};

using Structures =
    testing::Types<quorva_zrp::TZRPBase, quorva_zrp::TVESKRawDHReq, quorva_zrp::TVESKRawDHRsp,
                   quorva_zrp::TVESKEncDHInfo, quorva_zrp::TVESKKey, quorva_zrp::TVESKAccount,
                   quorva_zrp::TVESKAuthData, quorva_zrp::O2AuthData, quorva_zrp::TZRPAuthReqBody,
                   quorva_zrp::TZRPAuthRspBody, quorva_zrp::TZRPAckBody,
                   quorva_zrp::TZRPAuthRefreshReq, quorva_zrp::TZRPAuthRefreshNotifyBody,
                   quorva_zrp::TZRPRelay, quorva_zrp::TZRPRelayReqBody,
                   quorva_zrp::SpecifyZoneRouteInfo, quorva_zrp::SpecifyServerRouteInfo,
                   quorva_zrp::SpecifyNameRouteInfo, quorva_zrp::TZRPRouteChangeBody,
                   quorva_zrp::TZRPSynHead, quorva_zrp::TZRPAckHead, quorva_zrp::TZRPBingoBody,
                   quorva_zrp::TZRPDataHead, quorva_zrp::TZRPWaitBody, quorva_zrp::TZRPCStopBody,
                   quorva_zrp::TZRPSStopBody, quorva_zrp::TZRPHead, quorva_zrp::TZRPInFrame>;

struct UnionName {
    template <class U>
    static std::string GetName(int) {
        return UnionSample<U>::name;
    }
};

using Unions =
    testing::Types<quorva_zrp::TZRPKeyReq, quorva_zrp::TZRPKeyRsp, quorva_zrp::TVESKIDValue,
                   quorva_zrp::TZRPRouteInfo, quorva_zrp::TZRPExtHead, quorva_zrp::TZRPBody>;

}  // namespace zrp_test
