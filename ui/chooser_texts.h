// The texts of Qt's own file chooser in Russian.
#pragma once

#include <QTranslator>

namespace oxlade {

/// To be installed while the chooser is open. It needs no files: Qt's own translations are a
/// package of their own. Texts of anything else, and the names of keys, stay as they are.
class RussianChooserTexts final : public QTranslator {
  public:
    bool isEmpty() const override { return false; }
    /// Null for a text that it does not know. Any thread.
    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int n) const override;
};

} // namespace oxlade
