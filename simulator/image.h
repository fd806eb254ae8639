#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace oxlade::simulator {

constexpr std::size_t imageBytes = 3145728;
constexpr std::size_t signatureOffset = 32;
constexpr std::string_view signature = "MPC4000 Operating System";

// What the generated image says of itself in plain ASCII, from the byte after
// the signature and again at the start of every 64 KiB that follow.
constexpr std::string_view warning =
    "\nThis file is for the Oxlade simulator only. It holds no operating system.\n"
    "It must never be written to a real sampler.\n";

// An image of imageBytes bytes that passes for an OS image and is none. It is
// the same at every call; between the warnings the bytes look random, so that
// no two parts of it are alike.
std::string generateImage();

} // namespace oxlade::simulator
