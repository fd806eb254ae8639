// Runs the simulated sampler as a program.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace oxlade::simulator::test {

using Arguments = std::vector<std::string>;

/// Empty if the file cannot be read.
std::string contentsOf(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& bytes);

/// Polls until the condition holds; false after 30 s.
bool eventually(const std::function<bool()>& condition);

/// One run. The flash is the file "flash" in the folder, the trace the file "trace".
/// Killed by the destructor if it has not ended.
class SimulatorProcess final {
  public:
    enum class BrokenPipe { kills, isIgnored };

    /// `words` is OXLADE_SIM. Standard output and standard error share a pipe.
    SimulatorProcess(const std::filesystem::path& folder, const std::string& words,
                     const Arguments& arguments, BrokenPipe brokenPipe = BrokenPipe::kills);
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    pid_t pid() const { return pid_; }
    /// One read; blocks until there is something. Empty at the end of the output.
    std::string readOnce();
    std::string readToEnd();
    void closeOutput();
    void kill() const;
    /// Waits for the end. Returns the exit status, or the signal as a negative number.
    int wait();
    /// Whether the trace has the line "WHAT pid=N" of this run.
    bool hasNoted(const std::string& what) const;

  private:
    std::filesystem::path folder_;
    int output_ = -1;
    pid_t pid_ = -1;
    bool ended_ = false;
};

} // namespace oxlade::simulator::test
