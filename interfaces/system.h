// What the controller needs of the system, as small interfaces. The real ones
// are in platform/, the dialogs' in ui/; those of the tests record.
//
// Main thread unless a line says otherwise. Paths and texts are UTF-8 (a path:
// the bytes that the system knows the file by). Nothing here throws.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade {

/// The one door from other threads to the main thread.
class MainQueue {
  public:
    virtual ~MainQueue() = default;
    /// Any thread; returns at once. Jobs run on the main thread one at a time, in
    /// the order in which they were posted. A job may run an alert: those posted
    /// meanwhile run inside the alert's event loop. Jobs left when the program
    /// ends are dropped.
    virtual void post(std::function<void()> job) = 0;
};

/// One run of the flashing helper: made, given its callbacks, launched once.
/// Letting go of the object never stops, signals or delays the helper.
class HelperProcess {
  public:
    /// Gets everything that could be read at once: one call per read. Empty at
    /// the end of the stream. The bytes live for the call.
    using ReadabilityHandler = std::function<void(std::string_view bytes)>;
    using TerminationHandler = std::function<void()>;

    virtual ~HelperProcess() = default;

    /// The callback for output; an empty one removes it. Both callbacks are called on
    /// one background thread, never at the same time, and may be set from any thread,
    /// also from within a callback.
    virtual void setReadabilityHandler(ReadabilityHandler handler) = 0;
    /// Called once after the helper has exited and after all that it had written
    /// by then has gone through the readability handler. What a child of the
    /// helper still writes is not waited for.
    virtual void setTerminationHandler(TerminationHandler handler) = 0;
    /// Starts the helper, once: with its standard output and error joined on one
    /// pipe; in a session of its own, so that no terminal and no end of ours reaches
    /// it; with default signals, but a broken pipe ignored; with no other descriptor
    /// of ours; with our standard input, working directory and environment. Nothing
    /// on success, else the system's description of the error; no callback is called
    /// then.
    virtual std::optional<std::string> launch() = 0;
    /// The exit status; of a helper that died by a signal, the signal's number; -1
    /// when the system does not tell. Meaningful from the termination callback on,
    /// 0 before. Any thread.
    virtual std::int32_t terminationStatus() const = 0;
};

class HelperProcesses {
  public:
    virtual ~HelperProcesses() = default;
    /// A process that is not launched yet. `arguments` reach the helper byte for
    /// byte, without the program's name in front.
    virtual std::shared_ptr<HelperProcess> make(std::string executablePath,
                                                std::vector<std::string> arguments) = 0;
};

/// The program's own bundle.
class Bundle {
  public:
    virtual ~Bundle() = default;
    /// The bundle's top directory, absolute.
    virtual std::string bundlePath() const = 0;
    /// The full path of the resource file `name`.`type`, or nothing when the
    /// bundle holds no such file at this moment.
    virtual std::optional<std::string> pathForResource(std::string_view name,
                                                       std::string_view type) const = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    /// Whether a file stands there that the current user may execute; a directory
    /// does not count.
    virtual bool isExecutableFile(const std::string& path) const = 0;
    virtual std::string currentDirectoryPath() const = 0;
    /// In bytes; 0 when it cannot be asked for.
    virtual std::uint64_t fileSize(const std::string& path) const = 0;
    /// The first `limit` bytes of the file, fewer when it is shorter; empty when it
    /// cannot be read or is no regular file. Never blocks on a pipe or device.
    virtual std::string head(const std::string& path, std::size_t limit) const = 0;
};

/// The user's stored settings.
class UserDefaults {
  public:
    virtual ~UserDefaults() = default;
    /// Nothing when the key was never stored.
    virtual std::optional<std::string> string(std::string_view key) const = 0;
    virtual void setString(std::string_view key, std::string_view value) = 0;
};

enum class AlertStyle { informational, warning, critical };

/// A modal question or message. Without buttons of its own it gets the platform's
/// single one. The first button is the default (Return).
struct Alert {
    AlertStyle style;
    std::string messageText;
    std::string informativeText;
    std::vector<std::string> buttons;

    friend bool operator==(const Alert&, const Alert&) = default;
};

/// A modal panel to pick one existing file.
struct OpenPanel {
    std::string message;
    std::string fileNameExtension; ///< only files of this type can be chosen; no dot

    friend bool operator==(const OpenPanel&, const OpenPanel&) = default;
};

class Dialogs {
  public:
    virtual ~Dialogs() = default;
    /// Returns when the alert is dismissed: true for its first button and for
    /// nothing else (another button, Escape, the end of the program).
    virtual bool runAlert(const Alert& alert) = 0;
    /// The absolute path of the chosen file, or nothing when it was cancelled.
    virtual std::optional<std::string> runOpenPanel(const OpenPanel& panel) = 0;
};

class Workspace {
  public:
    virtual ~Workspace() = default;
    /// Opens the address in the user's browser; a failure is not reported.
    virtual void openUrl(std::string_view address) = 0;
};

/// All of the above, for whoever needs the system. The references outlive it; the
/// queue is shared, because a thread that waits for a helper may outlive the rest
/// of the program and post to it once more.
struct System {
    std::shared_ptr<MainQueue> mainQueue;
    HelperProcesses& helperProcesses;
    Bundle& bundle;
    FileSystem& fileSystem;
    UserDefaults& userDefaults;
    Dialogs& dialogs;
    Workspace& workspace;
};

} // namespace oxlade
