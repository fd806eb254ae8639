// What the log is to a screen reader: a text that is read and selected, never edited.
// Main thread.
#pragma once

class QAccessibleInterface;

namespace oxlade {

class LogTextView;

/// Over the text exactly as it was appended, also what the view has not shown yet. For
/// the toolkit's factory, which takes it over.
QAccessibleInterface* makeLogAccess(LogTextView& log);

} // namespace oxlade
