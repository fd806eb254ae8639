// File descriptors that close themselves.
//
// All that are made here are close-on-exec and numbered 3 or above, so that a
// program that was started without standard streams never mixes them up. Any thread,
// each descriptor on one at a time.
#pragma once

#include <optional>
#include <utility>

namespace oxlade {

class Descriptor final {
  public:
    Descriptor() = default;
    /// Takes over `number`; a negative one is none.
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { reset(); }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    void reset();

  private:
    int number_ = -1;
};

struct DescriptorPair {
    Descriptor first;
    Descriptor second;
};

/// first: the end to read; second: the end to write. Nothing on failure, errno
/// says why.
std::optional<DescriptorPair> makePipe();

/// Two connected stream sockets. Nothing on failure, errno says why.
std::optional<DescriptorPair> makeSocketPair();

} // namespace oxlade
