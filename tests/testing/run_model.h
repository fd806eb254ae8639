// A model of the output of a run, independent of the program: the C library scans the
// numbers, and every line is split off, trimmed and tested by itself.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace oxlade::test {

/// What one trimmed line reports.
struct LineModel {
    enum class Kind { nothing, erase, write, geometry, complete } kind = Kind::nothing;
    std::uint32_t n = 0;
    friend bool operator==(const LineModel&, const LineModel&) = default;
};

/// By the C library's scan, which leaves open what it makes of a number over 32 bits.
inline LineModel scannedLine(const std::string& line) {
    std::uint32_t n = 0;
    if (std::sscanf(line.c_str(), "Erase %u%%", &n) == 1) return {LineModel::Kind::erase, n};
    if (std::sscanf(line.c_str(), "Write %u%%", &n) == 1) return {LineModel::Kind::write, n};
    if (line.find("Flash geometry:") != std::string::npos) return {LineModel::Kind::geometry};
    if (line.find("OS upload complete") != std::string::npos) return {LineModel::Kind::complete};
    return {};
}

/// The same, with 2^32 - 1 for a number over 32 bits.
inline LineModel lineModel(const std::string& line) {
    auto model = scannedLine(line);
    const auto digits = std::min(line.find_first_of("0123456789"), line.size());
    const bool isNumber =
        model.kind == LineModel::Kind::erase || model.kind == LineModel::Kind::write;
    if (isNumber && std::strtoull(line.c_str() + digits, nullptr, 10) > UINT32_MAX)
        model.n = UINT32_MAX;
    return model;
}

struct RunModel {
    double bar = 0;
    std::string key = "op.flashing", geometry, log;
    int percent = 0;

    /// Takes one chunk of bytes as it was read.
    void take(std::string_view bytes) {
        auto chunk = isText(bytes) ? std::string{bytes} : latin1(bytes);
        std::replace(chunk.begin(), chunk.end(), '\r', '\n');
        log += chunk;
        for (const char* newline : {"\v", "\f", "\u0085", "\u2028", "\u2029"})
            for (std::size_t at; (at = chunk.find(newline)) != std::string::npos;)
                chunk.replace(at, std::string_view{newline}.size(), "\n");
        for (std::size_t at = 0; at <= chunk.size();) {
            const auto end = std::min(chunk.find('\n', at), chunk.size());
            takeLine(trimmed(chunk.substr(at, end - at)));
            at = end + 1;
        }
    }

  private:
    /// Whether it is UTF-8 throughout: every number in range and as short as can be.
    static bool isText(std::string_view bytes) {
        for (std::size_t at = 0; at < bytes.size();) {
            const unsigned lead = static_cast<unsigned char>(bytes[at++]);
            if (lead < 0x80) continue;
            if (lead < 0xC0 || lead >= 0xF8) return false;
            const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
            std::uint32_t number = lead & (0x3FU >> more);
            for (int i = 0; i < more; ++i, ++at) {
                if (at == bytes.size()) return false;
                const unsigned next = static_cast<unsigned char>(bytes[at]);
                if ((next & 0xC0U) != 0x80) return false;
                number = number << 6U | (next & 0x3FU);
            }
            const std::uint32_t least = more == 3 ? 0x10000 : more == 2 ? 0x800 : 0x80;
            if (number < least || number > 0x10FFFF) return false;
            if (number >= 0xD800 && number <= 0xDFFF) return false;
        }
        return true;
    }
    static std::string latin1(std::string_view bytes) {
        std::string text;
        for (const char byte : bytes) {
            const auto number = static_cast<unsigned char>(byte);
            if (number >= 0x80) text += number < 0xC0 ? '\xC2' : '\xC3';
            text += number < 0xC0 ? byte : static_cast<char>(number - 0x40);
        }
        return text;
    }
    static std::string trimmed(std::string text) {
        for (bool again = true; again;) {
            again = false;
            for (const std::string blank :
                 {" ", "\t", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
                  "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u202F", "\u205F",
                  "\u3000"}) {
                if (text.starts_with(blank)) text.erase(0, blank.size()), again = true;
                if (text.ends_with(blank)) text.erase(text.size() - blank.size()), again = true;
            }
        }
        return text;
    }
    void takeLine(const std::string& line) {
        const auto [kind, n] = lineModel(line);
        const double half = std::min(n * 0.5, 50.0);
        const int shown = static_cast<int>(std::min(n, 100U));
        if (kind == LineModel::Kind::erase) set(half, "op.erase", shown);
        if (kind == LineModel::Kind::write) set(50 + half, "op.write", shown);
        if (kind == LineModel::Kind::complete) set(100, "op.done", -1);
        if (kind == LineModel::Kind::geometry) geometry = line;
    }
    void set(double newBar, const char* newKey, int newPercent) {
        bar = newBar;
        key = newKey;
        percent = newPercent;
    }
};

} // namespace oxlade::test
