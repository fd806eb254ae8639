// What a run should leave behind, by the rules in the plainest words: the C library
// scans the numbers, and every line is cut, trimmed and looked at one by one. It shares
// no code with the program: a fault there must not be here as well.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade::test {

struct RunModel {
    double bar = 0;
    std::string key = "op.flashing", geometry, log;
    int percent = 0;

    /// One chunk of bytes as it was read.
    void take(std::string_view bytes) {
        auto chunk = isText(bytes) ? std::string{bytes} : latin1(bytes);
        std::replace(chunk.begin(), chunk.end(), '\r', '\n');
        log += chunk;
        for (const char* newline : {"\v", "\f", "\u0085", "\u2028", "\u2029"})
            for (std::size_t at; (at = chunk.find(newline)) != std::string::npos;)
                chunk.replace(at, std::string_view{newline}.size(), "\n");
        for (std::size_t at = 0; at <= chunk.size();) {
            const auto end = std::min(chunk.find('\n', at), chunk.size());
            line(chunk.substr(at, end - at));
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
        static const std::vector<std::string> blanks{
            " ",      "\t",     "\u00A0", "\u1680", "\u2000", "\u2001",
            "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007",
            "\u2008", "\u2009", "\u200A", "\u202F", "\u205F", "\u3000"};
        for (bool again = true; again;) {
            again = false;
            for (const auto& blank : blanks) {
                if (text.starts_with(blank)) text.erase(0, blank.size()), again = true;
                if (text.ends_with(blank)) text.erase(text.size() - blank.size()), again = true;
            }
        }
        return text;
    }
    /// As the library reads it, but for numbers over 32 bits, which it leaves open.
    static bool scan(const std::string& text, const char* format, std::uint32_t& n) {
        if (std::sscanf(text.c_str(), format, &n) != 1) return false;
        std::uint64_t number = 0;
        for (auto at = text.find_first_of("0123456789"); at < text.size(); ++at) {
            if (text[at] < '0' || text[at] > '9') break;
            number =
                std::min<std::uint64_t>(number * 10 + std::uint64_t(text[at] - '0'), 1ULL << 40U);
        }
        if (number > UINT32_MAX) n = UINT32_MAX;
        return true;
    }
    void line(const std::string& untrimmed) {
        const auto text = trimmed(untrimmed);
        std::uint32_t n = 0;
        if (scan(text, "Erase %u%%", n))
            set(std::min(n * 0.5, 50.0), "op.erase", static_cast<int>(std::min(n, 100U)));
        else if (scan(text, "Write %u%%", n))
            set(50 + std::min(n * 0.5, 50.0), "op.write", static_cast<int>(std::min(n, 100U)));
        else if (text.find("Flash geometry:") != std::string::npos)
            geometry = text;
        else if (text.find("OS upload complete") != std::string::npos)
            set(100, "op.done", -1);
    }
    void set(double newBar, const char* newKey, int newPercent) {
        bar = newBar;
        key = newKey;
        percent = newPercent;
    }
};

} // namespace oxlade::test
