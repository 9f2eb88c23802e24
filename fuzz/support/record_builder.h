// Records built from the input field by field, so that the fuzzer decides each value.
#pragma once

#include "fuzz/support/messages.h"

namespace zrp_fuzz {

using zrp_test::Soundness;

/// A record of the type over noise. A sound one can be encoded; a doubtful one may hold counts
/// above capacity, texts without NUL, flags above 1 and selectors that name nothing. The count of a
/// body behind a frame is at most what the record has room for.
Subject buildRecord(const TypePair& type, Input& input, Soundness soundness);

}  // namespace zrp_fuzz
