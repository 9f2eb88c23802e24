// A fixed stretch of work that tells how fast the processor is at this moment.
#pragma once

namespace zrp_bench {

/// Nanoseconds that a fixed number of additions took, some 100,000. They touch no memory and wait
/// for nothing, so that only the clock rate and whoever shares the core change how long they take;
/// on a core that another machine's work shares, they take up to twice as long.
double timeStretch();

}  // namespace zrp_bench
