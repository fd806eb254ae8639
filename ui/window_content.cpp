#include "ui/window_content.h"

#include "i18n/string_table.h"
#include "ui/card_view.h"
#include "ui/interface_style.h"
#include "ui/qt_button.h"
#include "ui/qt_label.h"
#include "ui/qt_log_view.h"
#include "ui/qt_segmented_control.h"
#include "ui/sprites/wait_girl_view.h"
#include "ui/status_views.h"
#include "ui/text.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <cmath>

namespace oxlade {
namespace {

/// Names the widget and places it in its parent.
template <class Widget>
Widget* placed(Widget* widget, const char* name, const QRect& frame) {
    widget->setObjectName(QLatin1String{name});
    widget->setGeometry(fromBottomLeft(frame, widget->parentWidget()->height()));
    return widget;
}

QtLabel* makeCaption(QWidget& parent, const char* name, const QRect& frame) {
    const TextStyle style{
        .pixels = 10, .weight = QFont::DemiBold, .color = SemanticColor::secondaryLabelColor};
    return placed(new QtLabel{style, &parent}, name, frame);
}

QtLabel* label(QWidget& parent, const char* name, const QRect& frame, const TextStyle& style) {
    return placed(new QtLabel{style, &parent}, name, frame);
}

/// Keeps presses, also while it is disabled: the window is not dragged by it.
template <class Widget>
Widget* control(Widget* widget) {
    widget->setAttribute(Qt::WA_NoMousePropagation);
    return widget;
}

QtButton* button(QWidget& parent, const char* name, const QRect& frame,
                 const std::function<void()>& action) {
    auto* result = control(placed(new QtButton{&parent}, name, frame));
    QObject::connect(result, &QPushButton::clicked, result, action);
    return result;
}

QPushButton* makeLink(const std::string& title, QWidget* parent) {
    auto* link = control(new QPushButton{withoutMnemonic(toQString(title)), parent});
    link->setFlat(true);
    link->setFont(interfaceFont(11));
    link->setCursor(Qt::PointingHandCursor);
    link->setAutoDefault(false);
    link->setFocusPolicy(Qt::StrongFocus);
    return link;
}

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
    label(*this, "titleLabel", {26, 552, 420, 32}, title)->setStringValue("Oxlade");
    controls_.subtitleLabel = label(*this, "subtitleLabel", {27, 530, 520, 18},
                                    {.color = SemanticColor::secondaryLabelColor});
    const QStringList languages{QStringLiteral("EN"), QStringLiteral("RU")};
    auto* language = new QtSegmentedControl{languages, static_cast<int>(CurrentLanguage),
                                            actions.languageChanged, this};
    controls_.languageControl = control(placed(language, "languageControl", {636, 554, 100, 24}));
    controls_.girlView =
        placed(new WaitGirlView{context.reduceMotion, this}, "girlView", {24, 332, 260, 184});
}

void WindowContent::buildDeviceCard(const WindowActions& actions) {
    QWidget& card = *placed(new CardView{this}, "deviceCard", {300, 416, 436, 100});
    auto* caption = makeCaption(card, "deviceCaptionLabel", {16, 76, 280, 14});
    caption->nameWidget(card);
    controls_.deviceCaptionLabel = caption;
    controls_.deviceStatusDot = placed(new QtStatusDot{&card}, "deviceStatusDot", {17, 55, 10, 10});
    controls_.deviceStatusLabel = label(card, "deviceStatusLabel", {34, 50, 270, 20},
                                        {.pixels = 14, .weight = QFont::DemiBold});
    controls_.deviceDetailLabel = label(card, "deviceDetailLabel", {16, 12, 290, 32},
                                        {.pixels = 12,
                                         .color = SemanticColor::secondaryLabelColor,
                                         .truncation = Truncation::twoLines});
    controls_.checkButton = button(card, "checkButton", {320, 34, 104, 32}, actions.checkDevice);
}

void WindowContent::buildFirmwareCard(const WindowActions& actions) {
    QWidget& card = *placed(new CardView{this}, "firmwareCard", {300, 332, 436, 72});
    auto* caption = makeCaption(card, "firmwareCaptionLabel", {16, 48, 190, 14});
    caption->nameWidget(card);
    controls_.firmwareCaptionLabel = caption;
    const TextStyle style{.weight = QFont::Medium,
                          .truncation = Truncation::middle,
                          .alignment = Qt::AlignLeft | Qt::AlignTop}; // nearer the buttons' titles
    controls_.firmwareLabel =
        placed(new QtFileLabel{style, &card}, "firmwareLabel", {16, 18, 190, 20});
    controls_.builtinButton =
        button(card, "builtinButton", {212, 20, 104, 32}, actions.useBundledFirmware);
    controls_.chooseButton =
        button(card, "chooseButton", {320, 20, 104, 32}, actions.chooseFirmware);
}

void WindowContent::buildProgressCard(const WindowActions& actions) {
    QWidget& card = *placed(new CardView{this}, "progressCard", {24, 232, 712, 84});
    auto* operation = label(card, "operationLabel", {16, 52, 440, 18}, {.weight = QFont::Medium});
    controls_.percentLabel = label(card, "percentLabel", {456, 52, 80, 18},
                                   {.color = SemanticColor::secondaryLabelColor,
                                    .alignment = Qt::AlignRight,
                                    .tabularDigits = true,
                                    .quiet = true}); // the bar says it
    controls_.operationLabel = operation;
    auto* progress = control(placed(new QtProgressIndicator{&card}, "progress", {16, 22, 520, 20}));
    operation->nameWidget(*progress);
    controls_.progress = progress;
    auto* install = button(card, "installButton", {552, 22, 148, 40}, actions.installFirmware);
    install->setDefault(true);
    install->setFont(interfaceFont(13, QFont::Medium));
    controls_.installButton = install;
}

void WindowContent::buildLog() {
    auto* caption = makeCaption(*this, "logCaptionLabel", {28, 206, 300, 14});
    controls_.logCaptionLabel = caption;
    logScrollView_ = control(placed(new LogScrollView{this}, "logScrollView", {24, 44, 712, 156}));
    logView_ = placed(new QtLogView{logScrollView_}, "logView", {0, 0, 712, 156});
    caption->nameWidget(*logView_);
    controls_.logView = logView_;
}

void WindowContent::buildCreditLine(const WindowContext& context, const WindowActions& actions) {
    const TextStyle style{.pixels = 11, .color = SemanticColor::secondaryLabelColor};
    auto* creditLabel = new QtLabel{style, this};
    creditLabel->setStringValue(creditText(context.version));
    websiteLink_ = makeLink(context.websiteLabel, this);
    connect(websiteLink_, &QPushButton::clicked, this, actions.openWebsite);
    const int credit = creditLabel->sizeHint().width(), link = websiteLink_->sizeHint().width();
    constexpr int gap = 4, y = 15, height = 14;
    const int x = static_cast<int>(std::floor((contentSize.width() - (credit + gap + link)) * 0.5));
    placed(creditLabel, "creditLabel", {x, y, credit, height});
    placed(websiteLink_, "websiteLink", {x + credit + gap, y, link, height});
}

void WindowContent::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    if (showsKeyboardFocus(*logView_))
        drawFocusRing(painter, logScrollView_->geometry(), panelRadius, palette());
    if (showsKeyboardFocus(*websiteLink_))
        // Narrower, for the dot before it.
        drawFocusRing(painter, websiteLink_->geometry().adjusted(1, 0, 0, 0), 2, palette());
}

void WindowContent::mousePressEvent(QMouseEvent* event) {
    // Not at the first movement: the window manager counts from where the pointer is by then.
    if (event->button() == Qt::LeftButton) window()->windowHandle()->startSystemMove();
}

} // namespace oxlade
