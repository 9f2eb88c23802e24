# The message catalogue for Cap'n Proto. Unions for what selectors choose; `none` stands for the
# placeholders.
@0xb3f0c1d27a94e85d;

using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("zrp_capnp");

struct Base {
  magic @0 :UInt16;
  headVersion @1 :UInt16;
  bodyVersion @2 :UInt16;
  command @3 :UInt16;
  timeStamp @4 :UInt32;
  encrypted @5 :UInt8;
  sequence @6 :UInt32;
  headLen @7 :UInt32;
  bodyLen @8 :UInt32;
}

struct RawDhReq { a @0 :Data; p @1 :Data; }
struct RawDhRsp { b @0 :Data; }
struct EncDhInfo { encMethod @0 :UInt8; encryptedInfo @1 :Data; }
struct Key { value @0 :Data; }

struct Account {
  type @0 :UInt16;
  value :union {
    none @1 :Void;
    id32 @2 :UInt32;
    id64 @3 :UInt64;
    text @4 :Text;
  }
  uid @5 :UInt64;
}

struct OAuthData { accessToken @0 :Text; extend @1 :Text; }

struct AuthReqBody {
  authType @0 :UInt16;
  gameToken @1 :Text;
  timeStamp @2 :UInt32;
  tokenVersion @3 :Text;
  oauth @4 :OAuthData;
}

struct AuthRspBody { account @0 :Account; authType @1 :UInt16; atk @2 :Text; extend @3 :Text; }
struct AckBody { authResInfo @0 :AuthRspBody; }
struct AuthRefreshReq { reserve @0 :UInt32; }
struct RefreshNotice { authType @0 :UInt16; atk @1 :Data; expireIn @2 :UInt32; }

struct Relay {
  position @0 :UInt32;
  identity @1 :Data;
  serverId @2 :UInt64;
  sessionId @3 :Int64;
  serverType @4 :UInt8;
  startServiceName @5 :Text;
}

struct RelayReqBody { relayType @0 :Int32; relayInfo @1 :Relay; }

struct ZoneRoute { typeId @0 :UInt32; zoneId @1 :UInt32; }
struct ServerRoute { serverId @0 :UInt64; serverType @1 :UInt8; }
struct NameRoute { serviceName @0 :Text; }

struct Route {
  union {
    none @0 :Void;
    zone @1 :ZoneRoute;
    server @2 :ServerRoute;
    loginPosition @3 :Int8;
    name @4 :NameRoute;
  }
}

struct RouteChangeBody { serverId @0 :UInt64; }

struct SynHead {
  keyInfo :union {
    none @0 :Void;
    rawDh @1 :RawDhReq;
    encDh @2 :EncDhInfo;
  }
  encMethod @3 :UInt8;
  gameId @4 :Int64;
  unitId @5 :Int32;
  clientType @6 :Int32;
  account @7 :Account;
  relayReqInfo @8 :RelayReqBody;
  authReqInfo @9 :AuthReqBody;
  compressMethods @10 :UInt8;
  route @11 :Route;
  reserved @12 :UInt32;
}

struct AckHead {
  encMethod @0 :UInt8;
  keyInfo :union {
    none @1 :Void;
    key @2 :Key;
    rawDh @3 :RawDhRsp;
    encDh @4 :EncDhInfo;
  }
  compressMethod @5 :UInt8;
  compressLimit @6 :UInt32;
  reserved @7 :UInt32;
}

struct DataHead { compressFlag @0 :UInt8; allowLost @1 :UInt8; route @2 :Route; }

struct BingoBody { relayInfo @0 :Relay; compressMethod @1 :UInt8; compressLimit @2 :UInt32; }
struct WaitBody { position @0 :UInt32; total @1 :UInt32; roughTime @2 :UInt32; }
struct ClientStopBody { reserved @0 :UInt32; }
struct ServerStopBody { code @0 :UInt32; exErrCode @1 :UInt32; }

struct Head {
  base @0 :Base;
  extend :union {
    none @1 :Void;
    syn @2 :SynHead;
    ack @3 :AckHead;
    data @4 :DataHead;
  }
}

struct Frame {
  head @0 :Head;
  body :union {
    none @1 :Void;
    ack @2 :AckBody;
    authReq @3 :AuthReqBody;
    authRsp @4 :AuthRspBody;
    wait @5 :WaitBody;
    clientStop @6 :ClientStopBody;
    serverStop @7 :ServerStopBody;
    bingo @8 :BingoBody;
    refreshReq @9 :AuthRefreshReq;
    refreshNotice @10 :RefreshNotice;
    routeChange @11 :RouteChangeBody;
  }
  rawBody @12 :Data;
}
