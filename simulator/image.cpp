#include "simulator/image.h"

#include <algorithm>
#include <cstdint>

namespace oxlade::simulator {

namespace {

constexpr std::string_view head = "FOR THE OXLADE SIMULATOR ONLY...";
static_assert(head.size() == signatureOffset);

constexpr std::size_t warningEvery = 65536;

// SplitMix64: the same sequence on every machine.
std::uint64_t next(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
}

void put(std::string& image, std::size_t offset, std::string_view text) {
    std::copy(text.begin(), text.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
}

} // namespace

std::string generateImage() {
    std::string image(imageBytes, '\0');
    std::uint64_t state = 4000;
    for (char& byte : image) byte = static_cast<char>(next(state) >> 56U);
    for (std::size_t at = warningEvery; at < imageBytes; at += warningEvery)
        put(image, at, warning);
    put(image, 0, head);
    put(image, signatureOffset, signature);
    put(image, signatureOffset + signature.size(), warning);
    return image;
}

} // namespace oxlade::simulator
