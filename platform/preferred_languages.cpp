#include "platform/preferred_languages.h"

#include <QLocale>

namespace oxlade {

std::vector<std::string> preferredLanguages() {
    std::vector<std::string> names;
    for (const QString& name : QLocale::system().uiLanguages()) names.push_back(name.toStdString());
    return names;
}

} // namespace oxlade
