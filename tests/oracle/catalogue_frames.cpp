// Tables of the heads, the small bodies and the frames, and the way to a table by its name.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tests/oracle/catalogue_rows.h"

namespace zrp_oracle {

using namespace quorva_zrp;

namespace {

// --- Heads of the handshake and of data ---------------------------------------------------------

constexpr Field base[] = {
    FIELD(TZRPBase, 1, uint16, wMagic),       FIELD(TZRPBase, 2, uint16, wHeadVersion),
    FIELD(TZRPBase, 3, uint16, wBodyVersion), FIELD(TZRPBase, 4, uint16, wCommand),
    FIELD(TZRPBase, 5, uint32, dwTimeStamp),  FIELD(TZRPBase, 6, uint8, bEncrypted),
    FIELD(TZRPBase, 7, uint32, dwSequence),   FIELD(TZRPBase, 8, uint32, dwHeadLen),
    FIELD(TZRPBase, 9, uint32, dwBodyLen),
};

constexpr Field synHead[] = {
    FIELD(TZRPSynHead, 1, uint8, bKeyMethod),
    FIELD(TZRPSynHead, 2, unionValue, stKeyInfo)
        .of(typeTZRPKeyReq)
        .governedBy(PLACE(TZRPSynHead, bKeyMethod)),
    FIELD(TZRPSynHead, 3, uint8, bEncMethod),
    FIELD(TZRPSynHead, 4, int64, llGameID),
    FIELD(TZRPSynHead, 5, int32, iUnitID),
    FIELD(TZRPSynHead, 6, int32, iClientType),
    FIELD(TZRPSynHead, 7, structure, stAccount).of(typeTVESKAccount),
    FIELD(TZRPSynHead, 8, uint8, bHasRelayInfo).atMost(1),
    FIELD(TZRPSynHead, 9, structure, stRelayReqInfo)
        .of(typeTZRPRelayReqBody)
        .governedBy(PLACE(TZRPSynHead, bHasRelayInfo)),
    FIELD(TZRPSynHead, 10, uint8, bHasAuthInfo).atMost(1),
    FIELD(TZRPSynHead, 11, structure, stAuthReqInfo)
        .of(typeTZRPAuthReqBody)
        .governedBy(PLACE(TZRPSynHead, bHasAuthInfo)),
    FIELD(TZRPSynHead, 12, uint8, bSupportCompressMethodList),
    FIELD(TZRPSynHead, 13, uint8, bRouteFlag),
    FIELD(TZRPSynHead, 14, unionValue, stRouteInfo)
        .of(typeTZRPRouteInfo)
        .governedBy(PLACE(TZRPSynHead, bRouteFlag)),
    FIELD(TZRPSynHead, 15, uint32, dwReserved),
};

constexpr Field ackHead[] = {
    FIELD(TZRPAckHead, 1, uint8, bEncMethod),
    FIELD(TZRPAckHead, 2, uint8, bKeyMethod),
    FIELD(TZRPAckHead, 3, unionValue, stKeyInfo)
        .of(typeTZRPKeyRsp)
        .governedBy(PLACE(TZRPAckHead, bKeyMethod)),
    FIELD(TZRPAckHead, 4, uint8, bCompressMethod),
    FIELD(TZRPAckHead, 5, uint32, dwCompressLimit).startingAs(1024),
    FIELD(TZRPAckHead, 6, uint32, dwReserved),
};

constexpr Field dataHead[] = {
    FIELD(TZRPDataHead, 1, uint8, bCompressFlag),
    FIELD(TZRPDataHead, 2, uint8, bAllowLost),
    FIELD(TZRPDataHead, 3, uint8, bRouteFlag),
    FIELD(TZRPDataHead, 4, unionValue, stRouteInfo)
        .of(typeTZRPRouteInfo)
        .governedBy(PLACE(TZRPDataHead, bRouteFlag)),
};

// --- Bodies -------------------------------------------------------------------------------------

constexpr Field bingoBody[] = {
    FIELD(TZRPBingoBody, 1, structure, stRelayInfo).of(typeTZRPRelay),
    FIELD(TZRPBingoBody, 2, uint8, bCompressMethod),
    FIELD(TZRPBingoBody, 3, uint32, dwCompressLimit).startingAs(1024),
};

constexpr Field waitBody[] = {
    FIELD(TZRPWaitBody, 1, uint32, dwPosition),
    FIELD(TZRPWaitBody, 2, uint32, dwTotal),
    FIELD(TZRPWaitBody, 3, uint32, dwRoughTime),
};

constexpr Field cStopBody[] = {
    FIELD(TZRPCStopBody, 1, uint32, dwReserved),
};

constexpr Field sStopBody[] = {
    FIELD(TZRPSStopBody, 1, uint32, dwCode),
    FIELD(TZRPSStopBody, 2, uint32, dwExErrCode),
};

// --- Frames: every union here is selected by the command of the base header ----------------------

constexpr Field extHead[] = {
    FIELD(TZRPExtHead, 0, char8, chNull),
    FIELD(TZRPExtHead, 4097, structure, stSyn).of(typeTZRPSynHead),
    FIELD(TZRPExtHead, 4098, structure, stAck).of(typeTZRPAckHead),
    FIELD(TZRPExtHead, 8193, char8, chAuthReq),
    FIELD(TZRPExtHead, 8194, char8, chAuthRsp),
    FIELD(TZRPExtHead, 12290, char8, chWait),
    FIELD(TZRPExtHead, 16403, structure, stData).of(typeTZRPDataHead),
    FIELD(TZRPExtHead, 20481, char8, chCStop),
    FIELD(TZRPExtHead, 20482, char8, chSStop),
    FIELD(TZRPExtHead, 24578, char8, chBingo),
    FIELD(TZRPExtHead, 28673, char8, chAuthRefreshReq),
    FIELD(TZRPExtHead, 28674, char8, chAuthRefreshNotify),
    FIELD(TZRPExtHead, 32770, char8, chRouteChange),
};

constexpr Field body[] = {
    FIELD(TZRPBody, 0, char8, chNull),
    FIELD(TZRPBody, 4097, char8, chSyn),
    FIELD(TZRPBody, 4098, structure, stAck).of(typeTZRPAckBody),
    FIELD(TZRPBody, 8193, structure, stAuthReq).of(typeTZRPAuthReqBody),
    FIELD(TZRPBody, 8194, structure, stAuthRsp).of(typeTZRPAuthRspBody),
    FIELD(TZRPBody, 12290, structure, stWait).of(typeTZRPWaitBody),
    FIELD(TZRPBody, 16403, char8, chData),
    FIELD(TZRPBody, 20481, structure, stCStop).of(typeTZRPCStopBody),
    FIELD(TZRPBody, 20482, structure, stSStop).of(typeTZRPSStopBody),
    FIELD(TZRPBody, 24578, structure, stBingo).of(typeTZRPBingoBody),
    FIELD(TZRPBody, 28673, structure, stAuthRefreshReq).of(typeTZRPAuthRefreshReq),
    FIELD(TZRPBody, 28674, structure, stAuthRefreshNotify).of(typeTZRPAuthRefreshNotifyBody),
    FIELD(TZRPBody, 32770, structure, stRouteChange).of(typeTZRPRouteChangeBody),
};

constexpr Field head[] = {
    FIELD(TZRPHead, 1, structure, stBase).of(typeTZRPBase),
    FIELD(TZRPHead, 2, unionValue, stExtend)
        .of(typeTZRPExtHead)
        .governedBy(PLACE(TZRPHead, stBase.wCommand)),
};

constexpr Field frame[] = {
    FIELD(TZRPFrame, 1, structure, stHead).of(typeTZRPHead),
    FIELD(TZRPFrame, 2, bytes, szBody).governedBy(PLACE(TZRPFrame, stHead.stBase.dwBodyLen)),
};

constexpr Field inFrame[] = {
    FIELD(TZRPInFrame, 1, structure, stHead).of(typeTZRPHead),
    FIELD(TZRPInFrame, 2, unionValue, stBody)
        .of(typeTZRPBody)
        .governedBy(PLACE(TZRPInFrame, stHead.stBase.wCommand)),
};

}  // namespace

STRUCTURE(TZRPBase, base);
STRUCTURE(TZRPSynHead, synHead);
STRUCTURE(TZRPAckHead, ackHead);
STRUCTURE(TZRPDataHead, dataHead);
STRUCTURE(TZRPBingoBody, bingoBody);
STRUCTURE(TZRPWaitBody, waitBody);
STRUCTURE(TZRPCStopBody, cStopBody);
STRUCTURE(TZRPSStopBody, sStopBody);
UNION(TZRPExtHead, extHead);
UNION(TZRPBody, body);
STRUCTURE(TZRPHead, head);
STRUCTURE(TZRPFrame, frame);
STRUCTURE(TZRPInFrame, inFrame);

namespace {

constexpr const Type* allTypes[] = {
    &typeTZRPBase,
    &typeTVESKRawDHReq,
    &typeTVESKRawDHRsp,
    &typeTVESKEncDHInfo,
    &typeTVESKKey,
    &typeTZRPKeyReq,
    &typeTZRPKeyRsp,
    &typeTVESKIDValue,
    &typeTVESKAccount,
    &typeTVESKAuthData,
    &typeO2AuthData,
    &typeTZRPAuthReqBody,
    &typeTZRPAuthRspBody,
    &typeTZRPAckBody,
    &typeTZRPAuthRefreshReq,
    &typeTZRPAuthRefreshNotifyBody,
    &typeTZRPRelay,
    &typeTZRPRelayReqBody,
    &typeSpecifyZoneRouteInfo,
    &typeSpecifyServerRouteInfo,
    &typeSpecifyNameRouteInfo,
    &typeTZRPRouteInfo,
    &typeTZRPRouteChangeBody,
    &typeTZRPSynHead,
    &typeTZRPAckHead,
    &typeTZRPBingoBody,
    &typeTZRPDataHead,
    &typeTZRPWaitBody,
    &typeTZRPCStopBody,
    &typeTZRPSStopBody,
    &typeTZRPExtHead,
    &typeTZRPBody,
    &typeTZRPHead,
    &typeTZRPFrame,
    &typeTZRPInFrame,
};

}  // namespace

std::span<const Type* const> types() {
    return allTypes;
}

const Type& typeNamed(const char* name) {
    for (const Type* type : allTypes) {
        if (strcmp(type->name, name) == 0) {
            return *type;
        }
    }
    fprintf(stderr, "the oracle knows no type called %s\n", name);
    abort();
}

}  // namespace zrp_oracle
