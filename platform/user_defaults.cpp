#include "platform/user_defaults.h"

#include <QStringList>
#include <QVariant>

namespace oxlade {

namespace {

QString program() { return QStringLiteral("Oxlade"); }

QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

// The user's own settings and no others: not the whole computer's.
StoredUserDefaults::StoredUserDefaults()
    : settings_(QSettings::NativeFormat, QSettings::UserScope, program(), program()) {
    settings_.setFallbacksEnabled(false);
}

std::optional<std::string> StoredUserDefaults::string(std::string_view key) const {
    const QVariant value = settings_.value(toQString(key));
    const bool isText =
        value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
    if (!isText) return std::nullopt;
    return value.toString().toStdString();
}

void StoredUserDefaults::setString(std::string_view key, std::string_view value) {
    settings_.setValue(toQString(key), toQString(value));
    settings_.sync(); // the program may end in any way
}

} // namespace oxlade
