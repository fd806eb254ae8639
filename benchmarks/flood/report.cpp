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
    std::printf("{\"helper_ms\": %.1f, \"total_ms\": %.1f, \"reader_s\": %.4f, \"main_s\": %.4f, "
                "\"characters\": %lld, "
                "\"before_kb\": %ld, \"after_kb\": %ld, \"most_kb\": %ld, "
                "\"longest_ms\": %.2f, \"longest_work_ms\": %.2f, \"p999_ms\": %.2f, "
                "\"p999_work_ms\": %.2f, \"ticks\": %zu}\n",
                r.helperMilliseconds, r.totalMilliseconds, r.readerSeconds, r.mainSeconds,
                r.characters, r.before.now, r.after.now, r.after.most, r.gaps.time.longest,
                r.gaps.work.longest, r.gaps.time.percentile99_9, r.gaps.work.percentile99_9,
                r.gaps.count);
    std::fflush(stdout);
}

} // namespace oxlade::benchmarks
