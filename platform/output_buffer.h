// The memory that the output of a helper is read into.
#pragma once

#include "interfaces/system.h"

#include <cstddef>
#include <memory>

namespace oxlade {

/// Hands out the bytes that were read where they are, without a copy. They are in blocks, each
/// of which is freed with the last of its bytes. One thread; what it handed out, any thread.
class OutputBuffer final {
  public:
    /// Returns room for `size` bytes, the same until some of it is taken.
    char* room(std::size_t size);
    /// Takes the first `count` bytes of the room, at most as many as were asked for.
    SharedBytes take(std::size_t count);

  private:
    std::shared_ptr<char> block_;
    std::size_t size_ = 0; ///< of the block
    std::size_t used_ = 0;
};

} // namespace oxlade
