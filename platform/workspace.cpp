#include "platform/workspace.h"

#include "platform/text.h"

#include <QDesktopServices>
#include <QUrl>

namespace oxlade {

void DesktopWorkspace::openUrl(std::string_view address) {
    QDesktopServices::openUrl(QUrl(toQString(address)));
}

} // namespace oxlade
