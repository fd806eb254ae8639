// What the log is to a screen reader: a text that is read and selected, never edited.
#pragma once

class QAccessibleInterface;

namespace oxlade {

class LogTextView;

/// Over the text exactly as it was appended, also what the view has not shown yet.
QAccessibleInterface* makeLogAccess(LogTextView& log);

} // namespace oxlade
