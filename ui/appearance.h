// Keeps the application's palette in the appearance that the desktop wants. Main
// thread; one per application, made after it.
#pragma once

#include "ui/palette.h"

#include <QObject>

#include <optional>

namespace oxlade {

class Appearance final : public QObject {
  public:
    /// Takes over the application's palette at once.
    Appearance();
    /// Gives the palette back to the desktop.
    ~Appearance() override;

    /// What the user asked the desktop for; nothing: judged by the palette that
    /// the desktop gives.
    void setPreference(std::optional<ColorScheme> preference);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void readDesktop();
    void apply();

    QPalette desktop_;
    std::optional<ColorScheme> preference_;
    bool applying_ = false;
};

} // namespace oxlade
