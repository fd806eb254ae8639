// encode_sprites HEADER PICTURE...
//
// Makes the header with the frames of the waiting animation from their pictures,
// given in order. Nothing is written unless every picture is good.
#include "tools/art_reader.h"
#include "tools/frames_header.h"
#include "tools/sprite_encoder.h"
#include "ui/sprites/picture_geometry.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace oxlade;

std::variant<LevelPicture, ArtError> readArtFile(const char* path) {
    std::ifstream in(path);
    if (!in) return ArtError{std::string(path) + ": cannot be read"};
    return readArt(in, path, pictureWidth, pictureHeight);
}

/// The encoded pictures, or nothing once the complaint has been printed.
std::optional<std::vector<std::vector<std::uint8_t>>>
encodePictures(std::span<const char* const> paths) {
    std::vector<std::vector<std::uint8_t>> frames;
    for (const char* path : paths) {
        const auto art = readArtFile(path);
        if (const auto* error = std::get_if<ArtError>(&art)) {
            std::cerr << error->message << '\n';
            return std::nullopt;
        }
        frames.push_back(encodeSprite(std::get<LevelPicture>(art)));
    }
    return frames;
}

/// Leaves no half-written header behind: it would look newer than its pictures.
bool writeFile(const char* path, const std::string& text) {
    std::ofstream out(path, std::ios::trunc);
    out << text;
    out.close();
    if (out) return true;
    std::cerr << path << ": cannot be written\n";
    std::remove(path);
    return false;
}

} // namespace

int main(int count, char* arguments[]) {
    const std::span<const char* const> given(arguments, static_cast<std::size_t>(count));
    if (given.size() < 3) {
        std::cerr << "usage: encode_sprites HEADER PICTURE...\n";
        return 1;
    }
    const auto frames = encodePictures(given.subspan(2));
    return frames && writeFile(given[1], framesHeader(*frames)) ? 0 : 1;
}
