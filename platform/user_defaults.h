// The user's settings, in the system's own per-user store.
#pragma once

#include "interfaces/system.h"

#include <QSettings>

namespace oxlade {

/// Nothing is written, and no file made, before setString. Main thread.
class StoredUserDefaults final : public UserDefaults {
  public:
    StoredUserDefaults();

    /// Also nothing when the stored value is a list or otherwise no text.
    std::optional<std::string> string(std::string_view key) const override;
    /// Stored when it returns, as far as the system lets us.
    void setString(std::string_view key, std::string_view value) override;

  private:
    QSettings settings_;
};

} // namespace oxlade
