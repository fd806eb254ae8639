// Reads one past the end of what it owns.
#include <cstdio>
#include <cstdlib>
#include <memory>

int main(int argc, char**) {
    const auto size = static_cast<std::size_t>(argc) * 8;
    const auto bytes = std::make_unique<volatile char[]>(size);
    std::printf("%d\n", bytes[size]);
}
