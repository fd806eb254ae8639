// The flash of the simulated sampler.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace oxlade::simulator {

/// Kept as a file that always holds what the sampler would find after a power cut at
/// that moment. A second file, named like it plus ".state", tells how far the last
/// flash came: "erasing", "writing" or "whole N" (N: the size of the image in bytes),
/// then a line feed. Every operation throws std::system_error if a file cannot be used.
class FlashMemory final {
  public:
    static constexpr std::size_t sectorBytes = 65536;

    /// Creates the file and its folders if they are missing.
    explicit FlashMemory(const std::string& path);
    ~FlashMemory();
    FlashMemory(const FlashMemory&) = delete;
    FlashMemory& operator=(const FlashMemory&) = delete;

    /// Erases (0xFF) up to `percent` of the bytes that the flash held or of the sectors
    /// that an image of `imageBytes` needs, whichever is more. `percent` must not
    /// decrease from call to call.
    void eraseTo(unsigned percent, std::size_t imageBytes);

    /// Writes up to `percent` of the image.
    void writeTo(unsigned percent, std::string_view image);

    /// Compares the flash with the image. If they are equal, cuts the file to the
    /// size of the image and sets the state to "whole".
    bool verify(std::string_view image);

  private:
    void setState(const std::string& state) const;
    void put(std::string_view bytes, std::size_t offset) const;

    std::string path_;
    int file_;
    std::size_t extent_ = 0; // bytes to erase; 0: not started
    std::size_t erased_ = 0;
    std::size_t written_ = 0;
    bool writing_ = false;
};

} // namespace oxlade::simulator
