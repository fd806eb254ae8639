#include "tools/art_reader.h"

#include <cstddef>
#include <istream>

namespace oxlade {
namespace {

constexpr char remark = ';';
constexpr char line = '#';
constexpr char background = '.';

std::string shown(char c) {
    if (c >= ' ' && c <= '~') return std::string{'\'', c, '\''};
    return "byte " + std::to_string(static_cast<unsigned char>(c));
}

std::string problemOfRow(std::string_view row, std::size_t width) {
    const std::size_t odd = row.find_first_not_of(std::string{line, background});
    if (odd != std::string_view::npos)
        return "pixel " + std::to_string(odd + 1) + " is " + shown(row[odd]) + ", not '#' or '.'";
    if (row.size() == width) return {};
    return "the row has " + std::to_string(row.size()) + " pixels, not " + std::to_string(width);
}

} // namespace

std::variant<LevelPicture, ArtError> readArt(std::istream& in, std::string_view name,
                                             std::uint16_t width, std::uint16_t height) {
    LevelPicture picture{width, height, {}};
    std::size_t lineNumber = 0;
    std::size_t rows = 0;
    const auto failed = [&](const std::string& problem) {
        return ArtError{std::string(name) + ":" + std::to_string(lineNumber) + ": " + problem};
    };

    for (std::string row; std::getline(in, row);) {
        ++lineNumber;
        if (rows == 0 && row.starts_with(remark)) continue;
        const std::string problem = problemOfRow(row, width);
        if (!problem.empty()) return failed(problem);
        if (++rows > height) return failed("more than " + std::to_string(height) + " rows");
        for (const char c : row) picture.levels.push_back(c == line ? 0 : 15);
    }
    if (rows == height) return picture;
    return failed("the picture ends after " + std::to_string(rows) + " rows of " +
                  std::to_string(height));
}

} // namespace oxlade
