// oxlade_make_image OUTPUT
//
// Writes an OS image for the simulated sampler: 3 MiB with the signature at offset 32,
// random-looking bytes that are the same every time, and a warning in plain ASCII after
// the signature and at every 64 KiB. Exit status 64 for anything but one argument, 73
// if the file cannot be written.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t imageBytes = 3145728;
constexpr std::size_t warningEvery = 65536;

constexpr std::string_view head = "FOR THE OXLADE SIMULATOR ONLY...";
constexpr std::string_view signature = "MPC4000 Operating System";
static_assert(head.size() == 32, "the signature follows at its offset");

constexpr std::string_view warning =
    "\nThis file is for the Oxlade simulator only. It holds no operating system.\n"
    "It must never be written to a real sampler.\n";

/// SplitMix64.
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

std::string generateImage() {
    std::string image(imageBytes, '\0');
    std::uint64_t state = 4000;
    for (char& byte : image) byte = static_cast<char>(next(state) >> 56U);
    for (std::size_t at = warningEvery; at < imageBytes; at += warningEvery)
        put(image, at, warning);
    put(image, 0, head);
    put(image, head.size(), signature);
    put(image, head.size() + signature.size(), warning);
    return image;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: oxlade_make_image OUTPUT\n";
        return 64;
    }
    std::ofstream file(argv[1], std::ios::binary | std::ios::trunc);
    file << generateImage();
    file.close();
    if (file) return 0;
    std::cerr << "oxlade_make_image: cannot write " << argv[1] << '\n';
    return 73;
}
