// A fixed stretch of work that tells how fast the processor is at this moment.
#pragma once

namespace zrp_bench {

/// Nanoseconds that a million additions took. They touch no memory and do not wait for each other,
/// so that only the clock rate, interruptions and whoever shares the core change how long they
/// take.
double timeStretch();

}  // namespace zrp_bench
