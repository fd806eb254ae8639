// Waiting for another process to end. Compiled into the program and into its keeper.
#pragma once

#include <sys/types.h>

namespace oxlade {

/// Opens a close-on-exec descriptor that polls readable once the process has ended, be it
/// reaped or not: a pidfd on Linux, a kqueue on macOS. The caller closes it. Returns -1
/// when the system has none, is out of descriptors, or there is no such process. Any
/// thread.
int openProcessEnd(pid_t process);

/// Whether the process has ended, for use where openProcessEnd gives none. Takes any
/// process, not only a child of the caller; a zombie has ended. Any thread.
bool processHasEnded(pid_t process);

} // namespace oxlade
