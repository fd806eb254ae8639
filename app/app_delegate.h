// The controller: the program's whole state and every rule that changes it.
//
// There is one, made by main and kept until the event loop returns. Main thread
// only; what comes from other threads goes through the main queue and holds the
// controller weakly.
//
// Setters only store. Whoever changes state calls refreshTexts (directly or
// through setOperation) and updateButtons.
#pragma once

#include "app/completion.h"
#include "app/output_parser.h"
#include "app/output_text.h"
#include "i18n/window_texts.h"
#include "interfaces/controls.h"
#include "interfaces/device_state.h"
#include "interfaces/system.h"
#include "interfaces/user_interface.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade {

class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
  public:
    /// Uses the system and the user interface; both outlive it. `website` is an
    /// https address. Make it with std::make_shared.
    AppDelegate(System system, UserInterface& userInterface, std::string website);

    // What the application calls.
    /// Builds the window, selects the shipped image and shows the window. Once, and
    /// before all below but for installMainMenu, openWebsite, loaderPath,
    /// bundledFirmwarePath and the plain state: the others act on the window's controls.
    void applicationDidFinishLaunching();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
    /// Builds the whole menu bar anew in the current language and installs it.
    void installMainMenu();

    // What the controls call.
    /// Asks the helper about the device; ignored while a run is going on.
    void checkDevice();
    /// Asks the user, then flashes firmwarePath; ignored without an image or while a
    /// run is going on. Whether the device is ready is the button's matter.
    void installFirmware();
    /// Selects the shipped image; ignored where the bundle has none.
    void useBundledFirmware();
    /// Lets the user pick an image; nothing changes when that is cancelled.
    void chooseFirmware();
    /// Takes over what the language control shows, stores it, and says everything
    /// anew in that language but for the log.
    void languageChanged();
    void openWebsite();

    // The rules.
    /// Stores both, then refreshes all texts. An unknown key is shown as it is. A
    /// negative percentage: none is shown; one over 100 is shown as it is.
    void setOperation(std::string_view key, std::int32_t percent);
    /// Derives the enabled flags of the four action buttons from the state.
    void updateButtons();
    /// Derives every text and status colour of the window from the state.
    void refreshTexts();
    /// Adds the text to the log as it is and scrolls to its end; an empty text
    /// does nothing.
    void appendLog(std::string_view text);

    /// The path of the helper to run; asks the file system at each call.
    std::string loaderPath() const;
    /// The path of the shipped image, or an empty text when the bundle has none.
    std::string bundledFirmwarePath() const;
    /// Whether the file may be flashed. If not, `reason` (may be null) gets a
    /// sentence in the current language.
    bool validateFirmwareAtPath(const std::string& path, std::string* reason) const;
    /// The one gate to `firmwarePath`: takes the file as it is named, or explains
    /// in an alert why not and leaves everything as it was.
    void selectFirmwareAtPath(const std::string& path);

    /// Starts one helper run; ignored while another is going on. The outcome
    /// arrives at handleTaskFinished, at once if the helper cannot be run.
    void runLoaderWithArguments(std::vector<std::string> arguments, const HelperMode& mode);
    /// One chunk of the helper's output, decoded.
    void handleTaskOutput(const std::string& text);
    /// One chunk with its carriage returns turned into line feeds.
    void parseProgressFromText(std::string_view text);
    /// The end of a run. Status 0 is success; -1 stands for a helper that could
    /// not be run.
    void handleTaskFinished(std::int32_t status, const HelperMode& mode);

    // The state. Absent and empty are the same for the texts.
    const std::string& firmwarePath() const { return firmwarePath_; }
    void setFirmwarePath(std::string path) { firmwarePath_ = std::move(path); }
    DeviceState deviceState() const { return deviceState_; }
    void setDeviceState(DeviceState state) { deviceState_ = state; }
    const std::string& deviceGeometry() const { return deviceGeometry_; }
    void setDeviceGeometry(std::string line) { deviceGeometry_ = std::move(line); }
    const std::string& operationKey() const { return operationKey_; }
    void setOperationKey(std::string key) { operationKey_ = std::move(key); }
    std::int32_t operationPercent() const { return operationPercent_; }
    void setOperationPercent(std::int32_t percent) { operationPercent_ = percent; }
    const std::shared_ptr<HelperProcess>& currentTask() const { return currentTask_; }
    void setCurrentTask(std::shared_ptr<HelperProcess> task) { currentTask_ = std::move(task); }
    const HelperMode& currentMode() const { return currentMode_; }
    void setCurrentMode(HelperMode mode) { currentMode_ = std::move(mode); }
    std::string taskOutput() const { return taskOutput_.string(); }
    void setTaskOutput(std::string_view output) { taskOutput_ = OutputText{output}; }

  private:
    void apply(const EraseReport& report);
    void apply(const WriteReport& report);
    void apply(const GeometryReport& report);
    void apply(const UploadComplete& report);
    void installCallbacks(const std::shared_ptr<HelperProcess>& task);
    void show(const WindowTexts& texts);
    WindowActions windowActions();

    System system_;
    UserInterface& userInterface_;
    std::string website_;
    std::optional<Controls> controls_; ///< from the window's making on

    std::string firmwarePath_;
    DeviceState deviceState_ = DeviceState::unknown;
    std::string deviceGeometry_;
    std::string operationKey_;
    std::int32_t operationPercent_ = 0;
    std::shared_ptr<HelperProcess> currentTask_; ///< non-null: the program is busy
    HelperMode currentMode_;
    OutputText taskOutput_;
};

} // namespace oxlade
