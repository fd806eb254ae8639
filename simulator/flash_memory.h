#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace oxlade::simulator {

// The sampler's flash, kept as a file: what stands in the file is what the
// sampler would find after a power cut at that moment. A second file beside it,
// its name with ".state" behind, says how far the last flash came: "erasing",
// "writing" or "whole N" (N the image's size in bytes), then a line end.
//
// Every operation throws std::system_error when the file cannot be used.
class FlashMemory final {
  public:
    static constexpr std::size_t sectorBytes = 65536;

    // Makes the file and its folders where they are missing.
    explicit FlashMemory(const std::string& path);
    ~FlashMemory();
    FlashMemory(const FlashMemory&) = delete;
    FlashMemory& operator=(const FlashMemory&) = delete;

    // Sees to it that the first `percent` of the flash are erased (0xFF): of
    // what it held, or of the sectors that an image of `imageBytes` needs,
    // whichever is more. Percentages may only grow from call to call.
    void eraseTo(unsigned percent, std::size_t imageBytes);

    // Sees to it that the first `percent` of the image are in the flash.
    void writeTo(unsigned percent, std::string_view image);

    // Reads the flash and compares it with the image. If it is the image, the
    // file is cut to the image's size and the state becomes "whole".
    bool verify(std::string_view image);

  private:
    void setState(const std::string& state) const;
    void put(std::string_view bytes, std::size_t offset) const;

    std::string path_;
    int file_;
    std::size_t extent_ = 0; // bytes that this flash erases; 0: not begun
    std::size_t erased_ = 0;
    std::size_t written_ = 0;
    bool writing_ = false;
};

} // namespace oxlade::simulator
