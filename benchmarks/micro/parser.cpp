// The parser beside the C library's scan of the same lines, and the decoder.
#include "app/chunk_decoder.h"
#include "app/output_parser.h"
#include "tests/testing/run_model.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace oxlade;
using namespace oxlade::test;

namespace {

using Lines = std::vector<std::string>;

LineModel ours(const std::string& line) {
    const auto report = parseLine(line);
    if (!report) return {};
    if (const auto* erase = std::get_if<EraseReport>(&*report))
        return {LineModel::Kind::erase, erase->n};
    if (const auto* write = std::get_if<WriteReport>(&*report))
        return {LineModel::Kind::write, write->n};
    if (std::holds_alternative<GeometryReport>(*report)) return {LineModel::Kind::geometry};
    return {LineModel::Kind::complete};
}

Lines progressLines() {
    Lines lines;
    for (const char* word : {"Erase ", "Write "})
        for (int n = 0; n <= 100; ++n) {
            std::string line{word};
            line += std::to_string(n);
            lines.push_back(line + '%');
        }
    return lines;
}

Lines textLines() {
    return {"Searching for the MPC4000...",
            "Note: this is the Oxlade simulator. No real sampler is touched.",
            "MPC4000 found in OS Loader mode.",
            "The sampler is well and has nothing to report at this moment.",
            "Verifying... ok",
            "Erasing takes a while, writing takes longer; do not switch the sampler off.",
            ""};
}

Lines wholeRun() {
    Lines lines{"Searching for the MPC4000...", "MPC4000 found in OS Loader mode.",
                "Flash geometry: 64 sectors of 64 KB"};
    for (const auto& line : progressLines()) lines.push_back(line);
    lines.insert(lines.end(), {"Verifying... ok", "OS upload complete."});
    return lines;
}

Lines linesOf(const std::string& kind) {
    if (kind == "progress") return progressLines();
    return kind == "text" ? textLines() : wholeRun();
}

/// Both must do the same work.
void requireEqualAnswers(const Lines& lines) {
    for (const auto& line : lines) {
        if (ours(line) == scannedLine(line)) continue;
        std::fprintf(stderr, "The answers differ: %s\n", line.c_str());
        std::exit(1);
    }
}

template <class Parse>
void parseLines(benchmark::State& state, const std::string& kind, Parse parse) {
    const Lines lines = linesOf(kind);
    requireEqualAnswers(lines);
    for (auto turn : state) {
        static_cast<void>(turn);
        for (const auto& line : lines) benchmark::DoNotOptimize(parse(line));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}

/// A chunk as the program parses it: split into lines, trimmed, parsed.
void parseChunk(benchmark::State& state) {
    std::string chunk;
    std::int64_t lines = 0;
    for (; chunk.size() < 60'000; ++lines) {
        chunk += "Erase ";
        chunk += std::to_string(chunk.size() / 600);
        chunk += "%\n";
    }
    for (auto turn : state) {
        static_cast<void>(turn);
        forEachReport(chunk, [](const Report& report) { benchmark::DoNotOptimize(report); });
    }
    state.SetItemsProcessed(state.iterations() * lines);
}

void decode(benchmark::State& state, const std::string& piece) {
    std::string chunk;
    while (chunk.size() + piece.size() <= 65'536) chunk += piece;
    for (auto turn : state) {
        static_cast<void>(turn);
        benchmark::DoNotOptimize(decodeChunk({chunk, nullptr}));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(chunk.size()));
}

const auto parse = [](benchmark::State& state, const std::string& kind) {
    parseLines(state, kind, ours);
};
const auto scan = [](benchmark::State& state, const std::string& kind) {
    parseLines(state, kind, scannedLine);
};

BENCHMARK_CAPTURE(parse, progress, "progress");
BENCHMARK_CAPTURE(scan, progress, "progress");
BENCHMARK_CAPTURE(parse, text, "text");
BENCHMARK_CAPTURE(scan, text, "text");
BENCHMARK_CAPTURE(parse, run, "run");
BENCHMARK_CAPTURE(scan, run, "run");
BENCHMARK(parseChunk);
BENCHMARK_CAPTURE(decode, ascii, "The sampler is well and has nothing to report.\n");
BENCHMARK_CAPTURE(decode, utf8, "Семплер здоров, сообщить нечего.\n");
BENCHMARK_CAPTURE(decode, latin1, "Sampler f\xFCr Ger\xE4te\n");

} // namespace
