// The rule by which the program picks its language at start. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace oxlade {

/// The key under which the choice is stored, as "en" or "ru".
inline constexpr std::string_view interfaceLanguageKey = "InterfaceLanguage";

/// 1 (Russian) or 0 (English). A stored choice wins whatever it holds; without one
/// the first of the system's preferred languages (such as ru-RU) decides.
std::int64_t languageAtStart(const std::optional<std::string>& stored,
                             std::span<const std::string> preferredLanguages);

} // namespace oxlade
