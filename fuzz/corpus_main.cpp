// Runs a target over the files of its corpus.
#include "fuzz/fuzz_target.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char* argv[]) {
    if (argc != 2) return 2;
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream stream{entry.path(), std::ios::binary};
        const std::string bytes{std::istreambuf_iterator<char>{stream}, {}};
        const std::string name = entry.path().filename().string();
        std::printf("%s, %zu bytes\n", name.c_str(), bytes.size());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++files;
    }
    // An empty corpus would pass and show nothing.
    return files > 0 ? 0 : 1;
}
