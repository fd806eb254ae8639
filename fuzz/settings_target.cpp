// Any bytes as the file of the user's settings.
#include "fuzz/fuzz_target.h"
#include "i18n/string_table.h"
#include "platform/user_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

using namespace oxlade;
using namespace oxlade::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir folder;
    static const bool ready = [] {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        const QSettings probe(QSettings::NativeFormat, QSettings::UserScope,
                              QStringLiteral("Oxlade"), QStringLiteral("Oxlade"));
        return QDir().mkpath(QFileInfo(probe.fileName()).path());
    }();
    mustHold(ready, "there is a folder for the settings");

    const QSettings probe(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Oxlade"),
                          QStringLiteral("Oxlade"));
    QFile file{probe.fileName()};
    mustHold(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "the file can be written");
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.close();

    const QtUserDefaults defaults;
    const auto language = languageAtStart(defaults.string(interfaceLanguageKey), {});
    mustHold(language == 0 || language == 1, "there is a language");
    return 0;
}
