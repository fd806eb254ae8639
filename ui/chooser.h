// The file chooser. Main thread.
#pragma once

#include "interfaces/system.h"

#include <QString>

class QWidget;

namespace oxlade {

/// Runs the desktop's chooser, or else Qt's own, in an event loop until it is closed. Returns
/// the absolute path of the chosen file; empty if none was. Stores nothing in the user's files.
QString chooseFile(QWidget* parent, const OpenPanel& panel, const QString& folder);

} // namespace oxlade
