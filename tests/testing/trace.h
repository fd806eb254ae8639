// A log of what the fakes were told, one line for each event.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace oxlade::test {

class Trace {
  public:
    void add(const std::string& line) {
        if (onAdd) onAdd(line);
        text_ += line + '\n';
    }
    /// All lines since the last call.
    std::string take() { return std::exchange(text_, {}); }

    std::function<void(const std::string& line)> onAdd; ///< called before each line is added

  private:
    std::string text_;
};

/// `text` in quotation marks, with line feeds and carriage returns escaped.
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

/// The shortest notation, such as 15.5 or 100.
inline std::string number(double value) {
    auto text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

} // namespace oxlade::test
