// The operations of the system that the controller uses, as interfaces. platform/
// implements them, ui/ the dialogs; the tests have fakes that record.
//
// Main thread unless stated otherwise. Texts are UTF-8; paths are the bytes that the
// system uses. No function throws.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade {

/// Runs jobs on the main thread for other threads.
class MainQueue {
  public:
    virtual ~MainQueue() = default;
    /// Any thread; does not block. Jobs run on the main thread one at a time, first in,
    /// first out. A job may run an alert: later jobs run in the alert's event loop. Jobs
    /// that are left when the program ends are dropped.
    virtual void post(std::function<void()> job) = 0;
};

/// Bytes that nobody changes, valid as long as a copy of `owner` exists. Any thread.
struct SharedBytes {
    std::string_view view;
    std::shared_ptr<const void> owner;
};

/// One run of the flashing helper. Set both handlers, then launch it once. Destroying the
/// object never stops, signals or delays the helper.
class HelperProcess {
  public:
    /// Gets all bytes that one read returned. Empty at end of file.
    using ReadabilityHandler = std::function<void(const SharedBytes& bytes)>;
    using TerminationHandler = std::function<void()>;

    virtual ~HelperProcess() = default;

    /// Sets the handler for output; an empty one removes it. Both handlers are called on
    /// one background thread, never at the same time. Any thread, also in a handler.
    virtual void setReadabilityHandler(ReadabilityHandler handler) = 0;
    /// Sets the handler that is called once, after the helper has exited and all that it
    /// wrote until then has gone to the readability handler. Does not wait for output of
    /// the helper's children. Any thread.
    virtual void setTerminationHandler(TerminationHandler handler) = 0;
    /// Starts the helper with its standard output and error on one pipe, in a session of
    /// its own, with default signal handling but SIGPIPE ignored, without our other
    /// descriptors; it inherits standard input, working directory and environment. Call
    /// once. Returns nothing on success, otherwise the system's description of the error;
    /// no handler is called then.
    virtual std::optional<std::string> launch() = 0;
    /// The exit status, or the number of the signal that ended the helper; -1 if the
    /// system does not tell; 0 before the termination handler is called. Any thread.
    virtual std::int32_t terminationStatus() const = 0;
};

class HelperProcesses {
  public:
    virtual ~HelperProcesses() = default;
    /// Returns a process that is not launched yet. The helper gets `arguments`, which do
    /// not include its own name, byte for byte.
    virtual std::shared_ptr<HelperProcess> make(std::string executablePath,
                                                std::vector<std::string> arguments) = 0;
};

/// The program's own bundle.
class Bundle {
  public:
    virtual ~Bundle() = default;
    /// The bundle's top directory, absolute.
    virtual std::string bundlePath() const = 0;
    /// The full path of the resource file `name`.`type`; nothing if the bundle does not
    /// have it now.
    virtual std::optional<std::string> pathForResource(std::string_view name,
                                                       std::string_view type) const = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    /// Whether `path` is a file, not a directory, that the current user may execute.
    virtual bool isExecutableFile(const std::string& path) const = 0;
    virtual std::string currentDirectoryPath() const = 0;
    /// In bytes; 0 if it cannot be determined.
    virtual std::uint64_t fileSize(const std::string& path) const = 0;
    /// The first `limit` bytes of the file, or all of a shorter one; empty if it cannot be
    /// read or is not a regular file. Never blocks on a pipe or device.
    virtual std::string head(const std::string& path, std::size_t limit) const = 0;
};

/// The user's stored settings.
class UserDefaults {
  public:
    virtual ~UserDefaults() = default;
    /// Nothing if the key was never stored.
    virtual std::optional<std::string> string(std::string_view key) const = 0;
    virtual void setString(std::string_view key, std::string_view value) = 0;
};

enum class AlertStyle { informational, warning, critical };

/// A modal question or message. The first button is the default one (Return). Without
/// buttons, the platform adds its OK button.
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
    std::string fileNameExtension; ///< of the files that can be chosen, without a dot

    friend bool operator==(const OpenPanel&, const OpenPanel&) = default;
};

class Dialogs {
  public:
    virtual ~Dialogs() = default;
    /// Returns when the alert is dismissed: true for its first button, false for any
    /// other, Escape and the end of the program.
    virtual bool runAlert(const Alert& alert) = 0;
    /// The absolute path of the chosen file; nothing if the panel was cancelled.
    virtual std::optional<std::string> runOpenPanel(const OpenPanel& panel) = 0;
};

class Workspace {
  public:
    virtual ~Workspace() = default;
    /// Opens the address in the user's browser. Failures are not reported.
    virtual void openUrl(std::string_view address) = 0;
};

/// What the desktop is told of a run of the helper. Nothing waits for the desktop.
class DesktopSession {
  public:
    virtual ~DesktopSession() = default;
    /// Asks the desktop not to end the user's session without asking. `reason` is shown then.
    virtual void beginRun(std::string_view reason) = 0;
    /// Shows beside the program's icon how much of the flash is done: 0 to 100, until the run
    /// ends. Ignored without a run.
    virtual void showProgress(double percent) = 0;
    virtual void endRun() = 0;
};

/// All of the above. The references must outlive it. The queue is shared: the thread of a
/// run may post to it while the rest of the program is destroyed.
struct System {
    std::shared_ptr<MainQueue> mainQueue;
    HelperProcesses& helperProcesses;
    Bundle& bundle;
    FileSystem& fileSystem;
    UserDefaults& userDefaults;
    Dialogs& dialogs;
    Workspace& workspace;
    DesktopSession& desktopSession;
};

} // namespace oxlade
