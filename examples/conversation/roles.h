// The two sides of the conversation, in the order in which they speak:
//
//   client                              server
//     SYN           ------------------>          its DH value and the modulus, account, route
//                   <------------------   ACK    the server's DH value
//     AUTH_REQ      ------------------>
//                   <------------------   AUTH_RSP
//                   <------------------   WAIT   as often as --queue says, each answered by
//     NULL          ------------------>          a sign of life
//                   <------------------   BINGO
//     DATA          <----------------->   DATA   proofs of the secret, then bodies and receipts
//     AUTH_REFRESH_REQ  -------------->
//                   <------------------   AUTH_REFRESH_NOTIFY
//                   <------------------   ROUTE_CHANGE
//     DATA          <----------------->   DATA   over the new route
//     CSTOP         ------------------>
//                   <------------------   SSTOP
#pragma once

#include "examples/conversation/peer.h"

namespace conversation {

void runClient(Peer& peer);
void runServer(Peer& peer);

}  // namespace conversation
