#include "i18n/language_choice.h"

namespace oxlade {

std::int64_t languageAtStart(const std::optional<std::string>& stored,
                             std::span<const std::string> preferredLanguages) {
    std::string_view code;
    if (stored)
        code = *stored;
    else if (!preferredLanguages.empty())
        code = preferredLanguages.front();
    return code.starts_with("ru") ? 1 : 0;
}

} // namespace oxlade
