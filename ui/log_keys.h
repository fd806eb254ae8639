// What keys do in a text that is only read: they move the view, not a caret.
// Main thread.
#pragma once

class QKeyEvent;
class QScrollBar;

namespace oxlade {

/// Moves the bar as the arrow and page keys do in a viewer. False, and nothing done,
/// for any other key and for those that select.
bool scrollByKey(QScrollBar& bar, const QKeyEvent& event);

/// Whether the key makes a selection longer or shorter.
bool extendsSelection(const QKeyEvent& event);

} // namespace oxlade
