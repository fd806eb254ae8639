#include "ui/qt_dialogs.h"

#include "i18n/string_table.h"
#include "ui/fonts.h"
#include "ui/palette.h"
#include "ui/qt_button.h"
#include "ui/text.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QPushButton>
#include <QTranslator>

#include <algorithm>
#include <utility>

namespace oxlade {
namespace {

const QString programName = QStringLiteral("Oxlade");

constexpr int side = 48;
/// The empty rows above the drawn icon, in points.
constexpr int iconInset = 3;

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
    constexpr double thickness = 5;
    const double x = side / 2.0 - thickness / 2, dot = thickness + 0.5;
    const double stemTop = inverted ? top + dot + 2.5 : top;
    const double stemBottom = inverted ? bottom : bottom - dot - 2.5;
    painter.drawRoundedRect(QRectF{x, stemTop, thickness, stemBottom - stemTop}, thickness / 2,
                            thickness / 2);
    const double dotTop = inverted ? top : bottom - dot;
    painter.drawEllipse(QRectF{side / 2.0 - dot / 2, dotTop, dot, dot});
}

/// The picture beside an alert's text, for the given ratio of device pixels to points.
QPixmap alertIcon(AlertStyle style, double devicePixelRatio) {
    QPixmap result{QSize{side, side} * devicePixelRatio};
    result.setDevicePixelRatio(devicePixelRatio);
    result.fill(Qt::transparent);
    QPainter painter{&result};
    painter.setRenderHint(QPainter::Antialiasing);
    if (style == AlertStyle::informational) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(iconColor(style));
        painter.drawEllipse(QRectF{3, 3, side - 6.0, side - 6.0});
        drawMark(painter, 12, 36, true);
    } else {
        drawTriangle(painter, iconColor(style));
        drawMark(painter, 12, 37, false);
    }
    return result;
}

/// Disables the window's content and menu bar while a dialog is open. Modality closes them to
/// input alone: assistive technology would show the controls as enabled and could press them.
/// The controls' own enabled flags stay as they are.
class WindowBlock final {
  public:
    /// `window` may be null.
    explicit WindowBlock(QWidget* window)
        : focused_{window == nullptr ? nullptr : window->focusWidget()} {
        if (window == nullptr) return;
        for (auto* child : window->findChildren<QWidget*>(QString{}, Qt::FindDirectChildrenOnly)) {
            if (child->isWindow() || child->testAttribute(Qt::WA_ForceDisabled)) continue;
            child->setEnabled(false);
            blocked_ << child;
        }
    }
    ~WindowBlock() {
        for (const auto& child : blocked_)
            if (child) child->setEnabled(true);
        // Disabling has taken the focus away.
        if (focused_ && focused_->isEnabled()) focused_->setFocus(Qt::OtherFocusReason);
    }
    WindowBlock(const WindowBlock&) = delete;
    WindowBlock& operator=(const WindowBlock&) = delete;

  private:
    QPointer<QWidget> focused_;
    QList<QPointer<QWidget>> blocked_;
};

/// Adds the buttons: the first is the default one, the last answers Escape. Returns the first.
QPushButton* addButtons(QMessageBox& box, std::vector<std::string> titles) {
    if (titles.empty())
        titles.push_back(toUtf8(QCoreApplication::translate("QPlatformTheme", "OK")));
    QPushButton *first = nullptr, *last = nullptr;
    for (const std::string& title : titles) {
        last = box.addButton(withoutMnemonic(toQString(title)),
                             first == nullptr ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
        if (first == nullptr) first = last;
    }
    box.setDefaultButton(first);
    box.setEscapeButton(last);
    return first;
}

/// Shows the texts without markup, the message in a stronger font.
void styleTexts(QMessageBox& box) {
    constexpr int textWidth = 340;
    for (QLabel* label : box.findChildren<QLabel*>()) {
        if (!label->pixmap().isNull()) continue;
        const bool message = label->text() == box.text();
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setFont(interfaceFont(13, message ? QFont::DemiBold : QFont::Normal));
        label->setFixedWidth(textWidth);
    }
}

/// Sets the margins, and aligns the icon's top with that of the message's capitals, above
/// which the label leaves some space.
void alignParts(QMessageBox& box) {
    box.layout()->setContentsMargins(24, 22, 24, 20);
    for (QLabel* label : box.findChildren<QLabel*>()) {
        if (label->pixmap().isNull()) continue;
        const QFontMetrics message{interfaceFont(13, QFont::DemiBold)};
        const int above = message.ascent() - message.capHeight() - iconInset;
        label->setContentsMargins(0, std::max(0, above), 0, 0);
        label->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    }
}

/// Matches the extension in any case, also in choosers of the desktop that are
/// case-sensitive.
QString nameFilter(const QString& extension) {
    QString pattern;
    for (const QChar c : extension)
        pattern +=
            c.isLetter() ? QStringLiteral("[%1%2]").arg(c.toLower()).arg(c.toUpper()) : QString{c};
    return QStringLiteral("*.%1 (*.%2)").arg(extension, pattern);
}

/// Translates Qt's own chooser into the program's language during its life. English where
/// Qt's translations are not installed.
class ChooserTexts {
  public:
    ChooserTexts() {
        const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (CurrentLanguage == 1 && russian_.load(QStringLiteral("qtbase_ru"), folder))
            QCoreApplication::installTranslator(&russian_);
    }

  private:
    QTranslator russian_; ///< its destructor removes it
};

/// Chooses one existing file. In Qt's own chooser also one with a quotation mark in its name
/// can be typed, which QFileDialog takes for the end of a name.
class Chooser final : public QFileDialog {
  public:
    Chooser(QWidget* parent, const QString& title, const QString& folder, const QString& filter)
        : QFileDialog{parent, title, folder, filter} {
        setFileMode(ExistingFile);
        setAcceptMode(AcceptOpen);
        setOption(HideNameFilterDetails);
        setOption(ReadOnly); // else files can be renamed and deleted in it
    }
    /// Of the accepted file, absolute.
    QString path() const {
        return QFileInfo{quoted_.isEmpty() ? selectedFiles().value(0) : quoted_}.absoluteFilePath();
    }

    void accept() override {
        quoted_ = typedQuoted();
        if (quoted_.isEmpty()) return QFileDialog::accept();
        done(Accepted);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* open = qobject_cast<QPushButton*>(watched);
        if (open != nullptr && event->type() == QEvent::EnabledChange) enable(*open);
        return QFileDialog::eventFilter(watched, event);
    }

  protected:
    void showEvent(QShowEvent* event) override {
        QFileDialog::showEvent(event);
        const auto* box = findChild<QDialogButtonBox*>();
        name_ = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (box == nullptr || name_ == nullptr) return; // the desktop's own chooser
        QPushButton* open = box->button(QDialogButtonBox::Open);
        open->installEventFilter(this);
        connect(name_, &QLineEdit::textChanged, this, [this, open] { enable(*open); });
    }

  private:
    /// The typed path, if it has a quotation mark and is that of a file.
    QString typedQuoted() const {
        if (name_ == nullptr || !name_->text().contains(u'"')) return {};
        const QString path = directory().absoluteFilePath(name_->text());
        return QFileInfo{path}.isFile() ? path : QString{};
    }
    /// QFileDialog disables the button for such a path.
    void enable(QPushButton& open) const {
        if (!open.isEnabled() && !typedQuoted().isEmpty()) open.setEnabled(true);
    }

    QLineEdit* name_ = nullptr; ///< a child, or null
    QString quoted_;
};

} // namespace

QtDialogs::QtDialogs(std::function<QWidget*()> parent)
    : parent_{std::move(parent)}, folder_{QDir::homePath()} {}

bool QtDialogs::runAlert(const Alert& alert) {
    const WindowBlock block{parent_()};
    QMessageBox box{parent_()};
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint);
    box.setWindowTitle(programName);
    box.setIconPixmap(alertIcon(alert.style, box.devicePixelRatioF()));
    box.setText(toQString(alert.messageText));
    box.setInformativeText(toQString(alert.informativeText));
    const QPushButton* first = addButtons(box, alert.buttons);
    styleTexts(box);
    alignParts(box);
    box.exec();
    return box.clickedButton() == first;
}

std::optional<std::string> QtDialogs::runOpenPanel(const OpenPanel& panel) {
    const WindowBlock block{parent_()};
    const ChooserTexts texts;
    Chooser chooser{parent_(), toQString(panel.message), folder_,
                    nameFilter(toQString(panel.fileNameExtension))};
    if (chooser.exec() != QDialog::Accepted) return std::nullopt;
    const QString path = chooser.path();
    folder_ = QFileInfo{path}.absolutePath();
    return toUtf8(path);
}

} // namespace oxlade
