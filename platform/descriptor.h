// File descriptors that close themselves. Any thread, each descriptor on one at a time.
#pragma once

#include <cerrno>
#include <optional>
#include <utility>

namespace oxlade {

class Descriptor final {
  public:
    Descriptor() = default;
    /// Takes over `number`; a negative one is none.
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        Descriptor moved(std::move(other));
        std::swap(number_, moved.number_);
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    /// Closes it; keeps errno.
    void reset();

  private:
    int number_ = -1;
};

struct DescriptorPair {
    Descriptor first;
    Descriptor second;
};

/// A close-on-exec pipe. first: the end to read; second: the end to write. Nothing on
/// failure, errno says why.
std::optional<DescriptorPair> makePipe();

/// Two connected close-on-exec stream sockets. Nothing on failure, errno says why.
std::optional<DescriptorPair> makeSocketPair();

/// Calls a system function, again for as long as a signal interrupts it; returns its last
/// result, which is negative on an error.
template <typename Call>
auto uninterrupted(Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR) return result;
    }
}

/// Opens /dev/null as each of the standard streams that is closed, so that no descriptor
/// opened later becomes one of them, which children would inherit. To be called before
/// anything else opens a descriptor.
void openClosedStandardStreams();

} // namespace oxlade
