// The labels that the controller sets. Main thread.
#pragma once

#include "interfaces/controls.h"
#include "ui/text_field.h"

namespace oxlade {

class TextLabel final : public TextField, public Label {
  public:
    using TextField::TextField;
    void setStringValue(std::string_view text) override;
    /// From now on the widget, which outlives the label's last text, has that text as
    /// its accessible name.
    void nameWidget(QWidget& widget) { named_ = &widget; }

  private:
    QWidget* named_ = nullptr;
};

class FileTextLabel final : public TextField, public FileLabel {
  public:
    using TextField::TextField;
    void setStringValue(std::string_view text) override { setText(text); }
    void setToolTip(std::string_view text) override;
    void setTextColor(SemanticColor color) override { setColor(color); }

    const QString& plainToolTip() const { return plainToolTip_; }

  private:
    std::string toolTipUtf8_;
    QString plainToolTip_;
};

/// A text as the rich text that shows just this text, free to break after each
/// slash and within very long names.
QString toolTipMarkup(const QString& plain);

} // namespace oxlade
