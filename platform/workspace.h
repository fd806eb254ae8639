// The rest of the user's desktop.
#pragma once

#include "interfaces/system.h"

namespace oxlade {

class DesktopWorkspace final : public Workspace {
  public:
    void openUrl(std::string_view address) override;
};

} // namespace oxlade
