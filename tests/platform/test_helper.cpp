// A helper for the tests. Its first argument says what it does. Uses none of our code.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

void put(std::string_view text, int descriptor = 1) {
    while (!text.empty()) {
        const ssize_t done = write(descriptor, text.data(), text.size());
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) return;
        text.remove_prefix(static_cast<std::size_t>(done));
    }
}

// Lines of text, `count` bytes in all.
void putBytes(long count) {
    std::string text;
    for (long i = 0; static_cast<long>(text.size()) < count; ++i)
        text += "line " + std::to_string(i) + '\n';
    put(text.substr(0, static_cast<std::size_t>(count)));
}

// Leaves a child that holds the pipe until the file is gone, or for ten minutes.
void leaveChild(const char* untilGone, bool talks) {
    if (fork() != 0) return;
    for (int i = 0; i < 600000 && access(untilGone, F_OK) == 0; ++i) {
        if (talks)
            put("grandchild\n");
        else
            usleep(1000);
    }
    _exit(0);
}

// Writes lines until the file is gone, then more than a pipe holds; gives up when a line
// cannot be written.
int strict(const char* marker, const char* untilGone) {
    const std::string line(100, 'x');
    for (int left = 4000; left > 0;) {
        if (write(1, line.data(), line.size()) < 0) return 3;
        if (access(untilGone, F_OK) != 0)
            --left;
        else
            usleep(100);
    }
    close(open(marker, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "";
    const char* const first = argc > 2 ? argv[2] : "";
    const char* const second = argc > 3 ? argv[3] : "0";
    if (mode == "print") {
        putBytes(std::atol(first));
        return std::atoi(second);
    }
    if (mode == "print-through-a-larger-pipe") {
        if (fcntl(STDOUT_FILENO, F_SETPIPE_SZ, 1 << 20) < 0) return 1;
        putBytes(std::atol(first));
    }
    if (mode == "arguments") // each with its NUL
        for (int i = 1; i < argc; ++i) put({argv[i], std::strlen(argv[i]) + 1});
    if (mode == "child" || mode == "talking-child") {
        leaveChild(first, mode == "talking-child");
        putBytes(std::atol(second));
        put("\nlast words of the helper\n");
        return 5;
    }
    if (mode == "until-gone") {
        if (argc > 3) leaveChild(second, false);
        put("waiting\n");
        while (access(first, F_OK) == 0) usleep(1000);
        put("gone\n");
    }
    if (mode == "close") {
        put("closing\n");
        close(1);
        close(2);
        while (access(first, F_OK) == 0) usleep(1000);
        return 9;
    }
    if (mode == "strict") {
        if (argc > 4) leaveChild(argv[4], true);
        return strict(first, second);
    }
    return 0;
}
