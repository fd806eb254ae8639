// The image test against its rule in other words.
#include "firmware/firmware.h"
#include "fuzz/fuzz_target.h"

#include <cstring>

using namespace oxlade;
using namespace oxlade::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto verdict = testImage(textOf(data, size));
    const bool isShort = size < 56;
    const bool isSigned = !isShort && std::memcmp(data + 32, "MPC4000 Operating System", 24) == 0;
    mustHold((verdict == ImageVerdict::tooSmall) == isShort, "short files are too small");
    mustHold((verdict == ImageVerdict::acceptable) == isSigned, "signed files pass");
    const auto head = testImage(textOf(data, size).substr(0, imageMinimumSize));
    mustHold(head == verdict, "the first 56 bytes decide");
    return 0;
}
