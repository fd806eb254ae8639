#include "ui/alert_sheet.h"

#include "ui/attention.h"
#include "ui/interface_style.h"
#include "ui/main_menu.h"
#include "ui/palette.h"
#include "ui/qt_button.h"
#include "ui/text.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextDocument>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace oxlade {
namespace {

/// The side of the square that the picture has, and the empty rows above its drawn part.
constexpr int alertIconSide = 48, alertIconInset = 3;
constexpr double middle = alertIconSide / 2.0;

QColor iconColor(AlertStyle style) {
    switch (style) {
    case AlertStyle::informational:
        return accentColor(ColorScheme::light);
    case AlertStyle::warning:
        return color(SemanticColor::systemOrangeColor, ColorScheme::light);
    case AlertStyle::critical:
        return color(SemanticColor::systemRedColor, ColorScheme::light);
    }
    return {};
}

/// A triangle whose corners are rounded by the pen's joins.
void drawTriangle(QPainter& painter, const QColor& colour) {
    QPainterPath path;
    path.moveTo(24, 6);
    path.lineTo(42, 38);
    path.lineTo(6, 38);
    path.closeSubpath();
    painter.setPen(QPen{colour, 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(colour);
    painter.drawPath(path);
}

/// An exclamation mark, or with `inverted` the letter i.
void drawMark(QPainter& painter, double top, double bottom, bool inverted) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    constexpr double thickness = 5, dot = thickness + 0.5, gap = 2.5;
    const double stemTop = inverted ? top + dot + gap : top;
    const double stemBottom = inverted ? bottom : bottom - dot - gap;
    painter.drawRoundedRect(
        QRectF{middle - thickness / 2, stemTop, thickness, stemBottom - stemTop}, thickness / 2,
        thickness / 2);
    painter.drawEllipse(QRectF{middle - dot / 2, inverted ? top : bottom - dot, dot, dot});
}

/// Draws a disc or a triangle with its mark; `at` is the square's top left corner. The same in
/// both appearances.
void drawAlertIcon(QPainter& painter, const QPointF& at, AlertStyle style) {
    painter.save();
    painter.translate(at);
    painter.setRenderHint(QPainter::Antialiasing);
    if (style == AlertStyle::informational) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(iconColor(style));
        painter.drawEllipse(QPointF{middle, middle}, middle - alertIconInset,
                            middle - alertIconInset);
        drawMark(painter, 12, 36, true);
    } else {
        drawTriangle(painter, iconColor(style));
        drawMark(painter, 12, 37, false);
    }
    painter.restore();
}

constexpr int sideMargin = 24, topMargin = 22, bottomMargin = 20;
constexpr int iconGap = 18, titleGap = 6, buttonRowGap = 16, buttonGap = 4;
constexpr int buttonInset = 4; ///< from a button's frame to what is drawn of it
constexpr int textLeft = sideMargin + alertIconSide + iconGap, textWidth = 340;
constexpr int leastSpaceAround = 16;

/// Plain text, wrapped at words, or anywhere in a word longer than a line.
class WrappedText final : public QLabel {
  public:
    WrappedText(const QString& text, QFont::Weight weight, QWidget* parent) : QLabel{parent} {
        setTextFormat(Qt::PlainText);
        setText(text);
        setFont(interfaceFont(13, weight));
        document_.setDefaultFont(font());
        document_.setDocumentMargin(0);
        document_.setPlainText(text);
        document_.setTextWidth(textWidth);
        resize(textWidth,
               text.isEmpty() ? 0 : static_cast<int>(std::ceil(document_.size().height())));
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter{this};
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette = palette();
        context.clip = event->rect();
        document_.documentLayout()->draw(&painter, context);
    }

  private:
    QTextDocument document_;
};

QScrollArea* scrolling(QWidget* content, QWidget* parent) {
    auto* area = new QScrollArea{parent};
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    content->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    return area;
}

} // namespace

AlertSheet::AlertSheet(const Alert& alert, QWidget* window)
    : QWidget{window, window == nullptr ? Qt::Dialog | Qt::FramelessWindowHint : Qt::Widget},
      style_{alert.style}, title_{new WrappedText{toQString(alert.messageText), QFont::DemiBold,
                                                  this}},
      text_{new WrappedText{toQString(alert.informativeText), QFont::Normal, this}},
      textArea_{scrolling(text_, this)}, radius_{panelRadius} {
    setObjectName(name);
    setWindowTitle(QStringLiteral("Oxlade"));
    setAccessibleName(title_->text());
    setAccessibleDescription(text_->text());
    setBackgroundRole(QPalette::Button);
    addButtons(alert.buttons);
    const QRect room = window == nullptr ? screen()->availableGeometry() : window->rect();
    const QSize size = panelSize(room.size());
    const QPoint corner = room.center() - QRect{{}, size}.center();
    panel_ = QRect{window == nullptr ? QPoint{} : corner, size};
    setFixedSize(window == nullptr ? size : room.size());
    if (window == nullptr) {
        move(corner);
        // On X11 without a compositor its corners would be black.
        if (QGuiApplication::platformName() == QLatin1String{"xcb"})
            radius_ = 0;
        else
            setAttribute(Qt::WA_TranslucentBackground);
    }
    placeParts();
}

void AlertSheet::addButtons(const std::vector<std::string>& titles) {
    for (const std::string& title : titles.empty() ? std::vector<std::string>{"OK"} : titles) {
        auto* button = new QtButton{this};
        button->setTitle(title);
        button->resize(button->sizeHint());
        connect(button, &QPushButton::clicked, this, [this, isFirst = buttons_.isEmpty()] {
            first_ = isFirst;
            hide();
            loop_.exit();
        });
        buttons_ << button;
    }
    moveFill(nullptr);
}

void AlertSheet::moveFill(QWidget* focused) {
    auto* own = dynamic_cast<QPushButton*>(focused);
    for (QPushButton* button : buttons_)
        button->setDefault(button == (buttons_.contains(own) ? own : buttons_.first()));
}

QPushButton& AlertSheet::filledButton() const {
    return **std::find_if(buttons_.begin(), buttons_.end(),
                          [](const QPushButton* button) { return button->isDefault(); });
}

QSize AlertSheet::panelSize(const QSize& room) {
    const int above = topMargin + title_->height() + (text_->height() > 0 ? titleGap : 0);
    const int below = buttonRowGap + buttons_.first()->height() + bottomMargin;
    const int most = room.height() - 2 * leastSpaceAround - above - below;
    const bool scrolls = text_->height() > most;
    textArea_->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
    const int barWidth = scrolls ? textArea_->verticalScrollBar()->sizeHint().width() : 0;
    textArea_->resize(textWidth + barWidth, std::min(text_->height(), most));
    const int body = std::max(above + textArea_->height(), topMargin + alertIconSide);
    return {textLeft + textWidth + sideMargin, body + below};
}

void AlertSheet::placeParts() {
    title_->move(panel_.topLeft() + QPoint{textLeft, topMargin});
    textArea_->move(panel_.topLeft() + QPoint{textLeft, topMargin + title_->height() + titleGap});
    int right = panel_.right() + 1 - sideMargin + buttonInset;
    for (QPushButton* button : buttons_) {
        button->move(right - button->width(),
                     panel_.bottom() + 1 - bottomMargin - button->height());
        right -= button->width() + buttonGap;
    }
}

bool AlertSheet::run() {
    const auto watch = connect(qApp, &QApplication::focusChanged, this,
                               [this](QWidget*, QWidget* now) { moveFill(now); });
    show();
    raise();
    if (isWindow())
        activateWindow();
    else
        askForAttention(this);
    buttons_.first()->setFocus(Qt::OtherFocusReason);
    QAccessibleEvent opened{this, QAccessible::Alert};
    QAccessible::updateAccessibility(&opened);
    loop_.exec();
    disconnect(watch);
    return first_;
}

void AlertSheet::pointOut() {
    QApplication::beep();
    ringed_ = true;
    update();
    constexpr int moment = 400; // ms
    QTimer::singleShot(moment, this, [this] {
        ringed_ = false;
        update();
    });
}

bool AlertSheet::event(QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride) return QWidget::event(event);
    // Every key comes as a key press, none as a shortcut of the window or a key of its menus.
    event->accept();
    return true;
}

void AlertSheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        filledButton().click();
    else if (event->key() == Qt::Key_Escape)
        buttons_.last()->click();
    else if (commandLetter(*event) == 'q')
        pointOut();
}

void AlertSheet::mousePressEvent(QMouseEvent*) {
    if (isWindow()) windowHandle()->startSystemMove();
}

void AlertSheet::closeEvent(QCloseEvent* event) {
    event->ignore();
    buttons_.last()->click();
}

void AlertSheet::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    if (!isWindow()) drawBackdrop(painter);
    const QColor fill = palette().color(QPalette::Active, backgroundRole());
    drawPanel(painter, panel_, radius_, fill, popupEdgeColor(fill, palette()));
    if (ringed_) drawFocusRing(painter, panel_, radius_, palette());
    // The picture's top stands at that of the message's capitals, above which is some space.
    const QFontMetricsF message{title_->font()};
    const int above = static_cast<int>(message.ascent() - message.capHeight()) - alertIconInset;
    drawAlertIcon(painter, panel_.topLeft() + QPoint{sideMargin, topMargin + above}, style_);
}

/// Dims the window, and draws the panel's shadow.
void AlertSheet::drawBackdrop(QPainter& painter) const {
    const bool dark = schemeOf(palette()) == ColorScheme::dark;
    painter.fillRect(rect(), QColor{0, 0, 0, dark ? 110 : 56});
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr int reach = 32, fall = 8;
    const double deepest = dark ? 6 : 3; // of 255, at the panel's edge
    for (int i = 1; i <= reach; ++i) {
        QPainterPath ring;
        ring.addRoundedRect(panel_.adjusted(-i, fall - i, i, fall + i), radius_ + i, radius_ + i);
        painter.fillPath(
            ring, QColor{0, 0, 0, static_cast<int>(std::lround(deepest * (reach - i) / reach))});
    }
}

} // namespace oxlade
