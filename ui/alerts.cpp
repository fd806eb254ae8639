#include "ui/alerts.h"

#include "i18n/string_table.h"
#include "ui/alert_icon.h"
#include "ui/fonts.h"
#include "ui/push_button.h"
#include "ui/text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QTranslator>

#include <algorithm>
#include <utility>

namespace oxlade {
namespace {

const QString programName = QStringLiteral("Oxlade");

/// Gives the box the buttons, the first as the default one, the last as Escape's
/// answer. Returns the first.
QPushButton* addButtons(QMessageBox& box, std::vector<std::string> titles) {
    if (titles.empty())
        titles.push_back(toUtf8(QCoreApplication::translate("QPlatformTheme", "OK")));
    QPushButton* first = nullptr;
    PushButton* last = nullptr;
    for (const std::string& title : titles) {
        last = new PushButton{ButtonSize::regular, &box};
        last->setTitle(title);
        last->setAutoDefault(true); // Return presses the one that has the keyboard
        box.addButton(last, first == nullptr ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
        if (first == nullptr) first = last;
    }
    box.setDefaultButton(first);
    box.setEscapeButton(last);
    return first;
}

/// Every text of the box as it is, without markup; the message above the rest of it.
void dressTexts(QMessageBox& box) {
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

/// The window's own margins, and the icon's top level with that of the message's
/// capitals: a label leaves room above them.
void alignParts(QMessageBox& box) {
    box.layout()->setContentsMargins(24, 22, 24, 20);
    for (QLabel* label : box.findChildren<QLabel*>()) {
        if (label->pixmap().isNull()) continue;
        const QFontMetrics message{interfaceFont(13, QFont::DemiBold)};
        const int above = message.ascent() - message.capHeight() - alertIconInset;
        label->setContentsMargins(0, std::max(0, above), 0, 0);
        label->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    }
}

/// Matches the ending in any case, also where the desktop's own chooser compares
/// letter by letter.
QString nameFilter(const QString& extension) {
    QString pattern;
    for (const QChar c : extension)
        pattern +=
            c.isLetter() ? QStringLiteral("[%1%2]").arg(c.toLower()).arg(c.toUpper()) : QString{c};
    return QStringLiteral("*.%1 (*.%2)").arg(extension, pattern);
}

/// What the toolkit's own chooser says, in the program's language, for as long as it
/// lives. English where the toolkit's translations are not installed.
class ChooserTexts {
  public:
    ChooserTexts() {
        const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (CurrentLanguage == 1 && russian_.load(QStringLiteral("qtbase_ru"), folder))
            QCoreApplication::installTranslator(&russian_);
    }

  private:
    QTranslator russian_; ///< takes itself out when it goes
};

bool hasExtension(const QString& path, const QString& extension) {
    return QFileInfo{path}.suffix().compare(extension, Qt::CaseInsensitive) == 0;
}

} // namespace

QtDialogs::QtDialogs(std::function<QWidget*()> parent)
    : parent_{std::move(parent)}, folder_{QDir::homePath()} {}

bool QtDialogs::runAlert(const Alert& alert) {
    QMessageBox box{parent_()};
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint);
    box.setWindowTitle(programName);
    box.setIconPixmap(alertIcon(alert.style, box.devicePixelRatioF()));
    box.setText(toQString(alert.messageText));
    box.setInformativeText(toQString(alert.informativeText));
    const QPushButton* first = addButtons(box, alert.buttons);
    dressTexts(box);
    alignParts(box);
    box.exec();
    return box.clickedButton() == first;
}

std::optional<std::string> QtDialogs::runOpenPanel(const OpenPanel& panel) {
    const ChooserTexts texts;
    const QString extension = toQString(panel.fileNameExtension);
    QFileDialog dialog{parent_(), toQString(panel.message), folder_, nameFilter(extension)};
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setOption(QFileDialog::ReadOnly); // else files can be renamed and deleted in it
    // A name that was typed need not match the filter: then the panel asks again.
    while (dialog.exec() == QDialog::Accepted) {
        const QString path = dialog.selectedFiles().value(0);
        if (!hasExtension(path, extension)) continue;
        folder_ = QFileInfo{path}.absolutePath();
        return toUtf8(QFileInfo{path}.absoluteFilePath());
    }
    return std::nullopt;
}

} // namespace oxlade
