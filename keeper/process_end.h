// Waiting for the end of a process, a child of the caller or not. Compiled into the program
// and into its keeper. Any thread.
#pragma once

#include <sys/types.h>

namespace oxlade {

/// Opens a close-on-exec descriptor that polls readable from the end of the process on, be
/// it reaped or not: a pidfd on Linux, a kqueue on macOS. It stands for this process, also
/// when another one gets its number later. The caller closes it. Returns -1, and errno says
/// why, when the system has no such descriptors (Linux before 5.3), none is left, or there
/// is no such process.
int openProcessEnd(pid_t process);

/// Whether the process has ended: for use from time to time where openProcessEnd gives no
/// descriptor. A zombie has ended; without /proc, only when it is reaped. Goes by the number
/// alone: another process that has got it counts as this one.
bool processHasEnded(pid_t process);

} // namespace oxlade
