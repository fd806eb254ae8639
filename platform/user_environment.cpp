#include "platform/user_environment.h"

#include "platform/file_system.h"

#include <QDesktopServices>
#include <QFile>
#include <QLocale>
#include <QStandardPaths>
#include <QUrl>
#include <QVariant>

#include <clocale>

namespace oxlade {

namespace {

QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

#ifdef __APPLE__

void open(std::optional<QSettings>& settings) {
    const auto program = QStringLiteral("Oxlade");
    settings.emplace(QSettings::NativeFormat, QSettings::UserScope, program, program);
    settings->setFallbacksEnabled(false);
}

bool isUntranslatedLocale() { return false; }

#else

// By the file's name: QSettings reads its files when it is made, and would block on a pipe.
void open(std::optional<QSettings>& settings) {
    const auto path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                      QStringLiteral("/Oxlade/Oxlade.conf");
    if (QFile::exists(path) && !isRegularFile(QFile::encodeName(path).toStdString())) return;
    settings.emplace(path, QSettings::NativeFormat);
}

bool isUntranslatedLocale() {
    const char* const name = std::setlocale(LC_MESSAGES, ""); // null: not installed
    return name != nullptr && std::string_view(name) == "C";
}

#endif

} // namespace

QtUserDefaults::QtUserDefaults() { open(settings_); }

std::optional<std::string> QtUserDefaults::string(std::string_view key) const {
    if (!settings_) return std::nullopt;
    const QVariant value = settings_->value(toQString(key));
    const bool isText =
        value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
    if (!isText) return std::nullopt;
    return value.toString().toStdString();
}

void QtUserDefaults::setString(std::string_view key, std::string_view value) {
    if (!settings_) return;
    settings_->setValue(toQString(key), toQString(value));
    settings_->sync(); // the program may be killed at any time
}

std::vector<std::string> preferredLanguages() {
    if (isUntranslatedLocale()) return {};
    std::vector<std::string> names;
    for (const QString& name : QLocale::system().uiLanguages()) names.push_back(name.toStdString());
    return names;
}

void QtWorkspace::openUrl(std::string_view address) {
    QDesktopServices::openUrl(QUrl(toQString(address)));
}

} // namespace oxlade
