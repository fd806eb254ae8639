// What the log is to a screen reader: a text that is read and selected, never edited.
// Main thread.
#pragma once

#include <QString>

class QAccessibleInterface;

namespace oxlade {

class LogTextView;

/// A text as it goes over the bus, where it would end at its first NUL for whoever reads
/// it: each becomes its picture. As many characters, and nothing hidden behind one.
QString withVisibleNuls(QString text);

/// Over the text exactly as it was appended, also what the view has not shown yet. For
/// the toolkit's factory, which takes it over.
QAccessibleInterface* makeLogAccess(LogTextView& log);

} // namespace oxlade
