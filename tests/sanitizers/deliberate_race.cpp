// Two threads that count without asking each other.
#include <QDBusMessage>

#include <cstdio>
#include <thread>

namespace {
int counted = 0;
void count() {
    for (int i = 0; i < 100'000; ++i) ++counted;
}
} // namespace

int main() {
    const QDBusMessage message; // so that the library is loaded
    std::thread one{count};
    std::thread other{count};
    one.join();
    other.join();
    std::printf("%d\n", counted);
}
