// What happened, in order, one line each.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace oxlade::test {

class Trace {
  public:
    void add(std::string line) { lines_.push_back(std::move(line)); }

    /// Everything since the last call, a line feed after each line.
    std::string take() {
        std::string text;
        for (const auto& line : lines_) text += line + '\n';
        lines_.clear();
        return text;
    }

  private:
    std::vector<std::string> lines_;
};

/// In quotation marks, line feeds and the like made visible.
inline std::string inQuotes(std::string_view text) {
    std::string result{"\""};
    for (const char c : text) {
        if (c == '\n')
            result += "\\n";
        else if (c == '\r')
            result += "\\r";
        else
            result += c;
    }
    return result + '"';
}

/// A number as a person would write it: 15.5, 100.
inline std::string number(double value) {
    auto text = std::to_string(value);
    while (text.ends_with('0')) text.pop_back();
    if (text.ends_with('.')) text.pop_back();
    return text;
}

} // namespace oxlade::test
