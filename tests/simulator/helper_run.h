#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace oxlade::simulator::test {

// A folder that goes with its contents.
class TemporaryFolder final {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

  private:
    std::string path_;
};

// The file's bytes; empty when it cannot be read.
std::string bytesOf(const std::string& path);
void writeFile(const std::string& path, std::string_view bytes);

// Looks until the condition holds, at most 20 s; false when it never did.
bool eventually(const std::function<bool()>& condition);

struct Options {
    std::string behaviour = "speed=max"; // OXLADE_SIM
    bool ignoreBrokenPipe = false;       // SIGPIPE, as the helper inherits it
    bool ownSession = false;
    int extraDescriptor = -1; // one that is open besides 0, 1 and 2
    bool joined = true;       // standard error on the same pipe, else thrown away
};

// One run of the real simulator program. Its flash is "flash" and its trace
// "trace" in the folder; it starts in this process's working directory. Killed
// at the end if it still runs.
class HelperRun final {
  public:
    HelperRun(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
              const Options& options = {});
    ~HelperRun();
    HelperRun(const HelperRun&) = delete;
    HelperRun& operator=(const HelperRun&) = delete;

    pid_t pid() const { return pid_; }
    // One read of all that is there; waits for something to come. Empty: no
    // process holds the output any more.
    std::string readOnce();
    std::string readToEnd();
    // What has been written up to now.
    std::string readAvailable();
    void closeOutput();
    // Waits for the end. An exit status, or minus the number of the signal.
    int wait();
    bool isAlive();
    // Whether the trace has a line "WHAT pid=..." of this run.
    bool noted(const std::string& what) const;

  private:
    std::string trace_;
    pid_t pid_ = -1;
    int output_ = -1;
    bool ended_ = false;
    int result_ = 0;
};

} // namespace oxlade::simulator::test
