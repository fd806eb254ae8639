// What a run of either way prints: one line of JSON.
#pragma once

#include "benchmarks/flood/main_thread_watch.h"

namespace oxlade::benchmarks {

/// In kB.
struct Memory {
    long now = 0, most = 0;
};
/// Of this process.
Memory memory();

struct FloodReport {
    double helperMilliseconds = 0; ///< from the launch until its exit was noticed
    double totalMilliseconds = 0;  ///< until all its output was in the view
    double readerSeconds = 0;      ///< processor time of the thread that reads; 0: the main one
    double mainSeconds = 0;        ///< processor time of the main thread in the total time
    long long characters = 0;      ///< in the log
    Memory before, after;
    Gaps gaps;
};
void print(const FloodReport& report);

} // namespace oxlade::benchmarks
