// All six pictures from their stored form into pixels.
#include "ui/sprites/sprite_decoder.h"
#include "ui/sprites/wait_girl_frames.h"

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
