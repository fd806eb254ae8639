// Keeps the application's palette in the desktop's appearance. Main thread.
#pragma once

#include "ui/palette.h"

#include <QObject>

#include <optional>

namespace oxlade {

/// One per application.
class Appearance final : public QObject {
  public:
    /// Replaces the application's palette at once.
    Appearance();
    /// Restores the desktop's palette.
    ~Appearance() override;

    /// What the user chose for the desktop; nullopt: that of the desktop's palette.
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
