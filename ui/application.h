// The Qt application as the desktop knows it. Main thread.
#pragma once

#include <QApplication>

#include <memory>
#include <string_view>

namespace oxlade {

/// `programPath` is argv[0] and outlives the application; `desktopId` is the name of the desktop
/// entry without its extension, and that of the icons in the resources. There are no options, not
/// even Qt's own, and closing the last window does not end it. Call once.
std::unique_ptr<QApplication> makeApplication(const char* programPath, std::string_view desktopId);

} // namespace oxlade
