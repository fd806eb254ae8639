// Text that only grows, kept in pieces: adding to it never copies what is there,
// however much that is.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade {

class OutputText final {
  public:
    OutputText() = default;
    explicit OutputText(std::string_view text) { append(text); }

    void append(std::string_view text) {
        while (!text.empty()) {
            if (pieces_.empty() || pieces_.back().size() == pieceSize) {
                pieces_.emplace_back();
                // The first grows as it must: most runs have little to say.
                if (pieces_.size() > 1) pieces_.back().reserve(pieceSize);
            }
            auto& piece = pieces_.back();
            const auto taken = text.substr(0, std::min(text.size(), pieceSize - piece.size()));
            piece += taken;
            text.remove_prefix(taken.size());
        }
    }

    /// The whole text, put together for this call.
    std::string string() const {
        std::string text;
        for (const auto& piece : pieces_) text += piece;
        return text;
    }

  private:
    static constexpr std::size_t pieceSize = 1 << 20; ///< bytes
    std::vector<std::string> pieces_;
};

} // namespace oxlade
