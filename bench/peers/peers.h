// The other codecs, one function each.
#pragma once

#include "bench/harness/case.h"

namespace zrp_bench {

/// A message kept, kept without oneofs, filled beforehand; fresh on the heap, fresh on an arena.
void addProtobuf(Cases& cases);
void addProtobufLite(Cases& cases);  ///< a message kept
void addNanopb(Cases& cases);
void addProtozero(Cases& cases);
void addFlatBuffers(Cases& cases);  ///< verified, then copied into a record
void addCapnProto(Cases& cases);    ///< plain and packed
void addMsgpack(Cases& cases);      ///< arrays without numbers

}  // namespace zrp_bench
