// The file in which a test reads how the helper was started and how it ended.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace oxlade::simulator {

/// Appends lines to a file that many runs may share, each line in one write:
///
///   start pid=N argc=N argv=A,B,C fds=0,1,2 sigpipe=default|ignored|handled
///         session=own|inherited cwd=PATH                        (on one line)
///   waiting PLACE pid=N        stopped at a gate or hanging
///   child N pid=N              the process id of the helper's own child
///   write-failed ERRNO pid=N   a strict run could not write its output
///   signal N pid=N             about to raise that signal
///   done STATUS pid=N          about to exit with that status
///
/// argc and argv do not count the name of the program. Arguments and cwd are
/// percent-encoded: every byte except letters, digits and "-._~/" as %XX.
class Trace final {
  public:
    /// Without a file, or with one that cannot be opened, notes are dropped.
    explicit Trace(const char* path);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    void start(const std::vector<std::string>& arguments) const;
    /// Appends `what` and the process id as one line.
    void note(std::string_view what) const;

  private:
    std::string fds() const;
    void put(std::string line) const;

    int file_ = -1;
};

} // namespace oxlade::simulator
