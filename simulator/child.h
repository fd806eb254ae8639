#pragma once

#include "simulator/behaviour.h"
#include "simulator/trace.h"

namespace oxlade::simulator {

// Where the behaviour asks for one, starts a child that keeps this process's
// output open, and notes its process id in the trace. It sees this process end,
// however it ends, stays for the seconds asked for, and goes.
void startChild(const Behaviour& behaviour, const Trace& trace);

} // namespace oxlade::simulator
