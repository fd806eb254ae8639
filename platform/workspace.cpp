#include "platform/workspace.h"

#include <QDesktopServices>
#include <QUrl>

namespace oxlade {

void DesktopWorkspace::openUrl(std::string_view address) {
    QDesktopServices::openUrl(
        QUrl(QString::fromUtf8(address.data(), static_cast<qsizetype>(address.size()))));
}

} // namespace oxlade
