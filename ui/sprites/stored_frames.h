// The stored frames of the waiting animation.
#pragma once

#include "ui/sprites/sprite_decoder.h"

#include <array>

namespace oxlade {

/// The size of every frame, in pixels.
inline constexpr int pictureWidth = 106;
inline constexpr int pictureHeight = 76;

/// The six frames in order: idle, four of the intro, the last of the loop. They
/// decode without error: stored_frames.cpp proves it with static assertions.
extern const std::array<SpriteBytes, 6> wait_girl_frames;

} // namespace oxlade
