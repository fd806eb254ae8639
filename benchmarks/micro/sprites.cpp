// Decodes the six pictures of the waiting animation.
#include "ui/sprites/stored_frames.h"

#include <benchmark/benchmark.h>

using namespace oxlade;

namespace {

void decodeSixFrames(benchmark::State& state) {
    for (auto turn : state) {
        static_cast<void>(turn);
        for (const SpriteBytes stored : wait_girl_frames)
            benchmark::DoNotOptimize(decodeSprite(stored));
    }
}
BENCHMARK(decodeSixFrames);

} // namespace
