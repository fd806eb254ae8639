#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace oxlade::simulator {

// Notes for a test about how the helper was started and how it ended, appended
// line by line to a file that many runs may share. Each line goes out in one
// write and names the run by its process id:
//
//   start pid=N argc=N argv=A,B,C fds=0,1,2 sigpipe=default|ignored|handled
//         session=own|inherited cwd=PATH                        (on one line)
//   waiting PLACE pid=N        held up by a gate or hanging
//   child N pid=N              the process id of the helper's own child
//   write-failed ERRNO pid=N   a strict run could not write its output
//   signal N pid=N             about to die by that signal
//   done STATUS pid=N          about to exit with that status
//
// argc and argv leave the program's own name out. Arguments and cwd are
// percent-encoded: all bytes but letters, digits and "-._~/" as %XX.
class Trace final {
  public:
    // No file, no notes, for an empty path or one that cannot be opened.
    explicit Trace(const char* path);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    void start(const std::vector<std::string>& arguments) const;
    // Appends `what` and the process id as one line.
    void note(std::string_view what) const;

  private:
    std::string fds() const;
    void put(std::string line) const;

    int file_ = -1;
};

// The percent-encoding that the notes use.
std::string percentEncoded(std::string_view bytes);

} // namespace oxlade::simulator
