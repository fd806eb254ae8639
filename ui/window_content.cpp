#include "ui/window_content.h"

#include "i18n/string_table.h"
#include "ui/control_drawing.h"
#include "ui/layout.h"
#include "ui/text.h"

#include <QApplication>
#include <QPainter>

#include <cmath>

namespace oxlade {
namespace {

/// Gives the widget its name and its frame in its parent.
template <class Widget>
Widget* placed(Widget* widget, const char* name, const QRect& frame) {
    widget->setObjectName(QLatin1String{name});
    widget->setGeometry(fromBottomLeft(frame, widget->parentWidget()->height()));
    return widget;
}

TextLabel* caption(QWidget& parent, const char* name, const QRect& frame) {
    const TextStyle style{
        .pixels = 10, .weight = QFont::DemiBold, .color = SemanticColor::secondaryLabelColor};
    return placed(new TextLabel{style, &parent}, name, frame);
}

TextLabel* label(QWidget& parent, const char* name, const QRect& frame, const TextStyle& style) {
    return placed(new TextLabel{style, &parent}, name, frame);
}

PushButton* button(QWidget& parent, const char* name, const QRect& frame,
                   const std::function<void()>& action, ButtonSize size = ButtonSize::regular) {
    auto* result = placed(new PushButton{size, &parent}, name, frame);
    QObject::connect(result, &QPushButton::clicked, result, action);
    return result;
}

class FixedText final : public TextField {
  public:
    FixedText(const TextStyle& style, std::string_view text, QWidget* parent)
        : TextField{style, parent} {
        setText(text);
    }
};

std::string creditText(const std::string& version) {
    const std::string author = "by Verrin  \u00B7";
    return version.empty() ? author : "v" + version + "  \u00B7  " + author;
}

} // namespace

WindowContent::WindowContent(const WindowContext& context, const WindowActions& actions,
                             QWidget* parent)
    : QWidget{parent} {
    setObjectName(QStringLiteral("content"));
    setFixedSize(contentSize);
    resize(contentSize);
    buildHeader(context, actions);
    buildDeviceCard(actions);
    buildFirmwareCard(actions);
    buildProgressCard(actions);
    buildLog();
    buildCreditLine(context, actions);
    connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

void WindowContent::buildHeader(const WindowContext& context, const WindowActions& actions) {
    const TextStyle title{.pixels = 26, .weight = QFont::Bold};
    titleLabel = placed(new FixedText{title, "Oxlade", this}, "titleLabel", {26, 552, 420, 32});
    subtitleLabel = label(*this, "subtitleLabel", {27, 530, 520, 18},
                          {.color = SemanticColor::secondaryLabelColor});
    const QStringList languages{QStringLiteral("EN"), QStringLiteral("RU")};
    languageControl =
        placed(new SegmentedSwitch{languages, int(CurrentLanguage), actions.languageChanged, this},
               "languageControl", {636, 554, 100, 24});
    girlView =
        placed(new WaitGirlView{context.reduceMotion, this}, "girlView", {24, 332, 260, 184});
}

void WindowContent::buildDeviceCard(const WindowActions& actions) {
    deviceCard = placed(new CardView{this}, "deviceCard", {300, 416, 436, 100});
    QWidget& card = *deviceCard;
    deviceCaptionLabel = caption(card, "deviceCaptionLabel", {16, 76, 280, 14});
    deviceCaptionLabel->nameWidget(card);
    deviceStatusDot = placed(new StatusLight{&card}, "deviceStatusDot", {17, 55, 10, 10});
    deviceStatusLabel = label(card, "deviceStatusLabel", {34, 50, 270, 20},
                              {.pixels = 14, .weight = QFont::DemiBold});
    deviceDetailLabel = label(card, "deviceDetailLabel", {16, 12, 290, 32},
                              {.pixels = 12,
                               .color = SemanticColor::secondaryLabelColor,
                               .truncation = Truncation::twoLines});
    checkButton = button(card, "checkButton", {320, 34, 104, 32}, actions.checkDevice);
}

void WindowContent::buildFirmwareCard(const WindowActions& actions) {
    firmwareCard = placed(new CardView{this}, "firmwareCard", {300, 332, 436, 72});
    QWidget& card = *firmwareCard;
    firmwareCaptionLabel = caption(card, "firmwareCaptionLabel", {16, 48, 190, 14});
    firmwareCaptionLabel->nameWidget(card);
    const TextStyle style{.weight = QFont::Medium, .truncation = Truncation::middle};
    firmwareLabel = placed(new FileTextLabel{style, &card}, "firmwareLabel", {16, 18, 190, 20});
    builtinButton = button(card, "builtinButton", {212, 20, 104, 32}, actions.useBundledFirmware);
    chooseButton = button(card, "chooseButton", {320, 20, 104, 32}, actions.chooseFirmware);
}

void WindowContent::buildProgressCard(const WindowActions& actions) {
    progressCard = placed(new CardView{this}, "progressCard", {24, 232, 712, 84});
    QWidget& card = *progressCard;
    operationLabel = label(card, "operationLabel", {16, 52, 440, 18}, {.weight = QFont::Medium});
    percentLabel = label(card, "percentLabel", {456, 52, 80, 18},
                         {.color = SemanticColor::secondaryLabelColor,
                          .alignment = Qt::AlignRight,
                          .monospacedDigits = true,
                          .quiet = true}); // the bar says it
    progress = placed(new ProgressBar{&card}, "progress", {16, 22, 520, 20});
    operationLabel->nameWidget(*progress);
    installButton = button(card, "installButton", {552, 22, 148, 40}, actions.installFirmware,
                           ButtonSize::large);
    installButton->setFilled(true);
}

void WindowContent::buildLog() {
    logCaptionLabel = caption(*this, "logCaptionLabel", {28, 206, 300, 14});
    logScrollView = placed(new LogPanel{this}, "logScrollView", {24, 44, 712, 156});
    logView = placed(new LogTextView{logScrollView}, "logView", {0, 0, 712, 156});
    logCaptionLabel->nameWidget(*logView);
}

void WindowContent::buildCreditLine(const WindowContext& context, const WindowActions& actions) {
    const TextStyle style{.pixels = 11, .color = SemanticColor::secondaryLabelColor};
    creditLabel = new TextLabel{style, this};
    creditLabel->setStringValue(creditText(context.version));
    websiteLink = new LinkButton{toQString(context.websiteLabel), this};
    connect(websiteLink, &QPushButton::clicked, this, actions.openWebsite);
    const int credit = creditLabel->sizeHint().width(), link = websiteLink->sizeHint().width();
    constexpr int gap = 4, y = 15, height = 14;
    const int x = int(std::floor((contentSize.width() - (credit + gap + link)) * 0.5));
    placed(creditLabel, "creditLabel", {x, y, credit, height});
    placed(websiteLink, "websiteLink", {x + credit + gap, y, link, height});
}

void WindowContent::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    if (logView->showsFocus())
        drawFocusRing(painter, logScrollView->geometry(), LogPanel::cornerRadius, palette());
    if (websiteLink->showsFocus()) drawFocusRing(painter, websiteLink->geometry(), 2, palette());
}

bool WindowContent::isBackground(const QPoint& at) const {
    const auto isControl = [](const QWidget* widget) {
        return dynamic_cast<const QAbstractButton*>(widget) != nullptr ||
               dynamic_cast<const SegmentedSwitch*>(widget) != nullptr ||
               dynamic_cast<const ProgressBar*>(widget) != nullptr ||
               dynamic_cast<const LogPanel*>(widget) != nullptr;
    };
    for (const QWidget* hit = childAt(at); hit != nullptr && hit != this; hit = hit->parentWidget())
        if (isControl(hit)) return false;
    return true;
}

} // namespace oxlade
