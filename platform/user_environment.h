// The user's settings, languages and browser, through Qt. Main thread.
#pragma once

#include "interfaces/system.h"

#include <QSettings>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade {

/// The program's own settings in the user's store, without those of the whole computer. A
/// file is written, and made, by setString only. Where anything but a regular file stands in
/// the settings file's place, nothing is read or stored.
class QtUserDefaults final : public UserDefaults {
  public:
    QtUserDefaults();

    /// Also nothing when the stored value is a list or no text.
    std::optional<std::string> string(std::string_view key) const override;
    /// Written to the disk before it returns; a failure is not reported.
    void setString(std::string_view key, std::string_view value) override;

  private:
    std::optional<QSettings> settings_;
};

/// Names such as "ru-RU", the most wanted first; may be empty. On Linux empty in the locales
/// C and POSIX, where programs ignore the variable LANGUAGE. Sets the process's locale for
/// messages.
std::vector<std::string> preferredLanguages();

class QtWorkspace final : public Workspace {
  public:
    void openUrl(std::string_view address) override;
};

} // namespace oxlade
