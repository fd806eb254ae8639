#include "ui/qt_dialogs.h"

#include "i18n/string_table.h"
#include "ui/alert_sheet.h"
#include "ui/chooser_texts.h"
#include "ui/text.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSettings>

#include <memory>
#include <utility>

namespace oxlade {
namespace {

/// Disables the window's content and menu bar while a dialog is open, and closes an open menu.
/// Modality would close them to input alone: assistive technology would show the controls as
/// enabled and could press them. The controls' own enabled flags stay as they are.
class WindowBlock final {
  public:
    /// `window` may be null.
    explicit WindowBlock(QWidget* window)
        : focused_{window == nullptr ? nullptr : window->focusWidget()} {
        while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
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

/// Matches the extension in any case, also in choosers of the desktop that are
/// case-sensitive.
QString nameFilter(const QString& extension) {
    QString pattern;
    for (const QChar c : extension)
        pattern +=
            c.isLetter() ? QStringLiteral("[%1%2]").arg(c.toLower()).arg(c.toUpper()) : QString{c};
    return QStringLiteral("*.%1 (*.%2)").arg(extension, pattern);
}

/// Translates Qt's own chooser into the program's language during its life.
class ChooserLanguage final {
  public:
    ChooserLanguage() {
        if (CurrentLanguage == 1) QCoreApplication::installTranslator(&russian_);
    }

  private:
    RussianChooserTexts russian_; ///< its destructor removes it
};

/// During its life, settings that are opened as the user's native ones are stored nowhere.
/// Settings that are open already are not affected, nor is anything on a Mac.
class NoUserSettings final {
  public:
    NoUserSettings() { setPath(QStringLiteral("/dev/null")); } // no folder for files
    ~NoUserSettings() { setPath(before_); }
    NoUserSettings(const NoUserSettings&) = delete;
    NoUserSettings& operator=(const NoUserSettings&) = delete;

  private:
    static void setPath(const QString& path) {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    }
    const QSettings any_{QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("oxlade")};
    const QString before_ = QFileInfo{any_.fileName()}.absolutePath();
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

/// Runs the desktop's chooser, or else Qt's own, in an event loop until it is closed. The absolute
/// path of the chosen file; empty if none was. Stores nothing in the user's files.
QString chooseFile(QWidget* parent, const OpenPanel& panel, const QString& folder) {
    const ChooserLanguage language;
    auto chooser = std::make_unique<Chooser>(parent, toQString(panel.message), folder,
                                             nameFilter(toQString(panel.fileNameExtension)));
    const bool accepted = chooser->exec() == QDialog::Accepted;
    QString path = accepted ? chooser->path() : QString{};
    const NoUserSettings nowhere; // the destructor writes the user's QtProject.conf
    chooser.reset();
    return path;
}

} // namespace

QtDialogs::QtDialogs(std::function<QWidget*()> parent)
    : parent_{std::move(parent)}, folder_{QDir::homePath()} {}

bool QtDialogs::runAlert(const Alert& alert) {
    QWidget* window = parent_();
    if (window != nullptr && !window->isVisible()) window = nullptr;
    const WindowBlock block{window};
    return AlertSheet{alert, window}.run();
}

std::optional<std::string> QtDialogs::runOpenPanel(const OpenPanel& panel) {
    const WindowBlock block{parent_()};
    const QString path = chooseFile(parent_(), panel, folder_);
    if (path.isEmpty()) return std::nullopt;
    folder_ = QFileInfo{path}.absolutePath();
    return toUtf8(path);
}

} // namespace oxlade
