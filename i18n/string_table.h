// Every text that the program shows or logs, in English and Russian, and the choice of
// the language.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace oxlade {

/// The language of the interface, the index into each entry's texts: 0 English,
/// 1 Russian, and never anything else: nobody checks it. Main thread.
extern std::int64_t CurrentLanguage;

/// The key under which the user's choice is stored, as "en" or "ru".
inline constexpr std::string_view interfaceLanguageKey = "InterfaceLanguage";

/// 1 (Russian) or 0 (English). A stored choice wins whatever it holds; without one
/// the first of the system's preferred languages (such as ru-RU) decides. Any thread.
std::int64_t languageAtStart(const std::optional<std::string>& stored,
                             std::span<const std::string> preferredLanguages);

struct Translation {
    std::string_view key;
    std::array<std::string_view, 2> texts; ///< UTF-8: English, Russian
};

inline constexpr std::size_t translationCount = 47;

/// The whole table, sorted by key; constant. Any thread.
std::span<const Translation, translationCount> translations();

/// The key's text in the current language, read at each call. An unknown key
/// gives itself, a null view a null view. The result lives for ever, but for an
/// unknown key, whose lifetime is the caller's. Keys match exactly. Main thread.
std::string_view L(std::string_view key);

/// The template with its one placeholder, %@ or %d, replaced by `value`. Text
/// in `value` that looks like a placeholder stays as it is; so does a template
/// without one. Any thread.
std::string filled(std::string_view textTemplate, std::string_view value);

} // namespace oxlade
