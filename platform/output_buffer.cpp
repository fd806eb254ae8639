#include "platform/output_buffer.h"

#include <algorithm>
#include <new>
#include <sys/mman.h>

namespace oxlade {

namespace {

// Enough for a usual run, which prints some kilobytes.
constexpr std::size_t firstBlock = std::size_t{256} << 10;
// Most of the cost of a flood is page faults: one huge page has one of them.
constexpr std::size_t hugePage = std::size_t{2} << 20;

std::shared_ptr<char> makeBlock(std::size_t size) {
    constexpr auto alignment = std::align_val_t{hugePage};
    auto* memory = ::operator new(size, alignment);
#ifdef MADV_HUGEPAGE
    madvise(memory, size, MADV_HUGEPAGE);
#endif
    return {static_cast<char*>(memory), [](char* block) { ::operator delete(block, alignment); }};
}

} // namespace

char* OutputBuffer::room(std::size_t size) {
    if (size_ - used_ < size) {
        size_ = std::max(size, block_ ? hugePage : firstBlock);
        block_ = makeBlock(size_);
        used_ = 0;
    }
    return block_.get() + used_;
}

SharedBytes OutputBuffer::take(std::size_t count) {
    const char* const bytes = block_.get() + used_;
    used_ += count;
    return {{bytes, count}, block_};
}

} // namespace oxlade
