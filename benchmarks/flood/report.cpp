#include "benchmarks/flood/report.h"

#include <cstdio>
#include <fstream>
#include <string>

namespace oxlade::benchmarks {

Memory memory() {
    Memory result;
    std::ifstream status{"/proc/self/status"};
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") status >> result.now;
        if (word == "VmHWM:") status >> result.most;
    }
    return result;
}

void print(const FloodReport& r) {
    std::printf("{\"helper_ms\": %.1f, \"total_ms\": %.1f, \"characters\": %lld, "
                "\"before_kb\": %ld, \"after_kb\": %ld, \"most_kb\": %ld, "
                "\"longest_ms\": %.2f, \"longest_work_ms\": %.2f, \"p999_ms\": %.2f, "
                "\"over50\": %zu, \"ticks\": %zu}\n",
                r.helperMilliseconds, r.totalMilliseconds, r.characters, r.before.now, r.after.now,
                r.after.most, r.gaps.longest, r.gaps.longestWork, r.gaps.percentile99_9,
                r.gaps.over50, r.gaps.count);
    std::fflush(stdout);
}

} // namespace oxlade::benchmarks
