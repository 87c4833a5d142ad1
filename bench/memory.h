#pragma once

namespace zt::bench {

/// Forgets the process's peak of resident memory so far.
void ResetPeakMemory();

/// Peak of resident memory since the last reset, MiB; 0 where the system does not tell.
double PeakMemoryMib();

}  // namespace zt::bench
