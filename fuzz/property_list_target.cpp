// Any bytes as the bundle's property list.
#include "app/chunk_decoder.h"
#include "fuzz/fuzz_target.h"
#include "platform/bundle.h"

using namespace oxlade;
using namespace oxlade::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto version = bundleVersion(
        QByteArrayView(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    mustHold(isUtf8(version), "the version is text");
    return 0;
}
