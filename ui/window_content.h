// Everything that stands in the window, built once. Main thread.
#pragma once

#include "interfaces/user_interface.h"
#include "ui/labels.h"
#include "ui/log_text_view.h"
#include "ui/push_button.h"
#include "ui/segmented_switch.h"
#include "ui/sprites/wait_girl_view.h"
#include "ui/status_views.h"

#include <QSize>

#include <functional>
#include <string>

namespace oxlade {

/// What the window has to be told of the program.
struct WindowContext {
    std::string version;      ///< for the credit line; may be empty
    std::string websiteLabel; ///< the title of the website link: the host's name
    /// Whether the user wants less motion; asked at each start of the figure, and
    /// expected to answer at once. Empty: never.
    std::function<bool()> reduceMotion;
};

/// In points.
inline constexpr QSize contentSize{760, 620};

/// The window's content: the controls by their names, which are also their object
/// names. All are children of the content; none has a text that depends on the
/// language or the state yet.
class WindowContent final : public QWidget {
  public:
    WindowContent(const WindowContext& context, const WindowActions& actions, QWidget* parent);

    TextField* titleLabel = nullptr;
    TextLabel* subtitleLabel = nullptr;
    SegmentedSwitch* languageControl = nullptr;
    WaitGirlView* girlView = nullptr;
    CardView* deviceCard = nullptr;
    TextLabel* deviceCaptionLabel = nullptr;
    StatusLight* deviceStatusDot = nullptr;
    TextLabel* deviceStatusLabel = nullptr;
    TextLabel* deviceDetailLabel = nullptr;
    PushButton* checkButton = nullptr;
    CardView* firmwareCard = nullptr;
    TextLabel* firmwareCaptionLabel = nullptr;
    FileTextLabel* firmwareLabel = nullptr;
    PushButton* builtinButton = nullptr;
    PushButton* chooseButton = nullptr;
    CardView* progressCard = nullptr;
    TextLabel* operationLabel = nullptr;
    TextLabel* percentLabel = nullptr;
    ProgressBar* progress = nullptr;
    PushButton* installButton = nullptr;
    TextLabel* logCaptionLabel = nullptr;
    LogPanel* logScrollView = nullptr;
    LogTextView* logView = nullptr;
    TextLabel* creditLabel = nullptr;
    LinkButton* websiteLink = nullptr;

    /// Whether the window can be dragged by what stands at this point.
    bool isBackground(const QPoint& at) const;

  protected:
    /// Draws the focus rings that have no room within their controls.
    void paintEvent(QPaintEvent* event) override;

  private:
    void buildHeader(const WindowContext& context, const WindowActions& actions);
    void buildDeviceCard(const WindowActions& actions);
    void buildFirmwareCard(const WindowActions& actions);
    void buildProgressCard(const WindowActions& actions);
    void buildLog();
    void buildCreditLine(const WindowContext& context, const WindowActions& actions);
};

} // namespace oxlade
