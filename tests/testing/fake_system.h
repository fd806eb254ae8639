// A system in memory: files, settings, alerts, a helper that the test plays.
#pragma once

#include "interfaces/system.h"
#include "tests/testing/trace.h"

#include <deque>
#include <map>
#include <utility>

namespace oxlade::test {

inline const std::string bundlePath = "/apps/Oxlade.app";
inline const std::string bundledHelper = bundlePath + "/Contents/MacOS/oxlade";
inline const std::string bundledImage = bundlePath + "/Contents/Resources/mpcv171.bin";

/// An image that passes: 56 bytes and as many zeros as wanted after them.
inline std::string validImage(std::size_t size = 56) {
    std::string bytes(32, 'x');
    bytes += "MPC4000 Operating System";
    bytes.resize(size, '\0');
    return bytes;
}

struct FakeFile {
    std::string bytes;
    bool executable = false;
};

class FakeFiles final : public FileSystem, public Bundle {
  public:
    bool isExecutableFile(const std::string& path) const override {
        const auto file = files.find(path);
        return file != files.end() && file->second.executable;
    }
    std::string currentDirectoryPath() const override { return workingDirectory; }
    std::uint64_t fileSize(const std::string& path) const override {
        ++sizeQueries;
        const auto file = files.find(path);
        return file == files.end() ? 0 : file->second.bytes.size();
    }
    std::string head(const std::string& path, std::size_t limit) const override {
        ++headReads;
        const auto file = files.find(path);
        return file == files.end() ? std::string{} : file->second.bytes.substr(0, limit);
    }
    std::string bundlePath() const override { return test::bundlePath; }
    std::optional<std::string> pathForResource(std::string_view name,
                                               std::string_view type) const override {
        ++resourceQueries;
        auto path =
            test::bundlePath + "/Contents/Resources/" + std::string{name} + '.' + std::string{type};
        if (!files.contains(path)) return std::nullopt;
        return path;
    }

    std::map<std::string, FakeFile> files;
    std::string workingDirectory = "/home/user";
    mutable int sizeQueries = 0, headReads = 0, resourceQueries = 0;
};

class FakeQueue final : public MainQueue {
  public:
    void post(std::function<void()> job) override { jobs.push_back(std::move(job)); }
    void run() {
        while (!jobs.empty()) {
            const auto job = std::move(jobs.front());
            jobs.pop_front();
            job();
        }
    }
    std::deque<std::function<void()>> jobs;
};

class FakeProcess final : public HelperProcess {
  public:
    explicit FakeProcess(Trace& trace) : trace_{trace} {}
    void setReadabilityHandler(ReadabilityHandler handler) override {
        if (!handler) trace_.add("reading callback removed");
        readable = std::move(handler);
    }
    void setTerminationHandler(TerminationHandler handler) override {
        terminated = std::move(handler);
    }
    std::optional<std::string> launch() override {
        // What a real one would print before it is listened to would be lost.
        if (!readable || !terminated) trace_.add("launched without its callbacks");
        trace_.add(launchError ? "launch refused" : "launched");
        return launchError;
    }
    std::int32_t terminationStatus() const override { return status; }

    /// What the system would do, on its own thread.
    void print(std::string_view bytes) {
        const auto handler = readable;
        const auto owned = std::make_shared<const std::string>(bytes);
        if (handler) handler({*owned, owned});
    }
    void exit(std::int32_t exitStatus) {
        status = exitStatus;
        const auto handler = terminated;
        if (handler) handler();
    }

    ReadabilityHandler readable;
    TerminationHandler terminated;
    std::optional<std::string> launchError;
    std::int32_t status = 0;

  private:
    Trace& trace_;
};

class FakeProcesses final : public HelperProcesses {
  public:
    explicit FakeProcesses(Trace& trace) : trace_{trace} {}
    std::shared_ptr<HelperProcess> make(std::string path,
                                        std::vector<std::string> arguments) override {
        std::string line = "process " + path;
        for (const auto& argument : arguments) line += " [" + argument + ']';
        trace_.add(line);
        const auto process = std::make_shared<FakeProcess>(trace_);
        process->launchError = launchError;
        last = process;
        ++made;
        return process;
    }
    std::weak_ptr<FakeProcess> last;
    std::optional<std::string> launchError;
    int made = 0;

  private:
    Trace& trace_;
};

class FakeDefaults final : public UserDefaults {
  public:
    explicit FakeDefaults(Trace& trace) : trace_{trace} {}
    std::optional<std::string> string(std::string_view key) const override {
        const auto value = values.find(std::string{key});
        if (value == values.end()) return std::nullopt;
        return value->second;
    }
    void setString(std::string_view key, std::string_view value) override {
        trace_.add("store " + std::string{key} + ' ' + inQuotes(value));
        values[std::string{key}] = value;
    }
    std::map<std::string, std::string> values;

  private:
    Trace& trace_;
};

class FakeDialogs final : public Dialogs, public Workspace {
  public:
    explicit FakeDialogs(Trace& trace) : trace_{trace} {}
    bool runAlert(const Alert& alert) override {
        static constexpr const char* styles[] = {"informational", "warning", "critical"};
        std::string line = std::string{styles[static_cast<int>(alert.style)]} + " alert " +
                           inQuotes(alert.messageText) + " / " + inQuotes(alert.informativeText);
        for (const auto& button : alert.buttons) line += " [" + button + ']';
        trace_.add(line);
        if (duringAlert) std::exchange(duringAlert, {})();
        return answerFirst;
    }
    std::optional<std::string> runOpenPanel(const OpenPanel& panel) override {
        trace_.add("open panel " + inQuotes(panel.message) + " *." + panel.fileNameExtension);
        return chosenFile;
    }
    void openUrl(std::string_view address) override { trace_.add("open " + std::string{address}); }

    bool answerFirst = true;
    std::function<void()> duringAlert; ///< what happens while the next alert is up
    std::optional<std::string> chosenFile;

  private:
    Trace& trace_;
};

/// Not in the trace, which is about what the user sees.
class FakeSession final : public DesktopSession {
  public:
    void beginRun(std::string_view reason) override { told += "begin " + inQuotes(reason) + '\n'; }
    void showProgress(double percent) override { told += number(percent) + '\n'; }
    void endRun() override { told += "end\n"; }

    std::string told;
};

/// All of them. The bundle has a helper and `image`, by default a valid one of 3 MiB.
struct FakeSystem {
    explicit FakeSystem(std::string image = validImage(3'145'728)) {
        files.files[bundledHelper] = {"", true};
        files.files[bundledImage] = {std::move(image), false};
    }
    System system() {
        return {queue, processes, files, files, defaults, dialogs, dialogs, session};
    }

    std::shared_ptr<FakeProcess> helper() { return processes.last.lock(); }
    /// The helper prints, or exits, and the main queue runs.
    void print(std::string_view bytes) {
        helper()->print(bytes);
        queue->run();
    }
    void exit(std::int32_t status) {
        helper()->exit(status);
        queue->run();
    }

    Trace trace;
    FakeFiles files;
    std::shared_ptr<FakeQueue> queue = std::make_shared<FakeQueue>();
    FakeProcesses processes{trace};
    FakeDefaults defaults{trace};
    FakeDialogs dialogs{trace};
    FakeSession session;
};

} // namespace oxlade::test
