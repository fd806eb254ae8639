// The texts that the program shows and logs, in English and Russian, and the choice of
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

/// The language of the interface: 0 English, 1 Russian. Used as an index without a check.
/// Main thread.
extern std::int64_t CurrentLanguage;

/// The key under which the user's choice is stored, as "en" or "ru".
inline constexpr std::string_view interfaceLanguageKey = "InterfaceLanguage";

/// 1 (Russian) if the stored choice starts with "ru" or, without a stored choice, the
/// first of the preferred languages (such as "ru-RU") does; otherwise 0 (English). A
/// stored choice that names neither language is English. Any thread.
std::int64_t languageAtStart(const std::optional<std::string>& stored,
                             std::span<const std::string> preferredLanguages);

struct Translation {
    std::string_view key;
    std::array<std::string_view, 2> texts; ///< UTF-8: English, Russian
};

inline constexpr std::size_t translationCount = 47;

/// The table, sorted by key. Any thread.
std::span<const Translation, translationCount> translations();

/// The entry of `key` in the table, null for an unknown key. Keys match exactly. Any thread.
const Translation* translationOf(std::string_view key);

/// The text of the entry in the current language; it has static lifetime. Main thread.
std::string_view textOf(const Translation& translation);

/// The text of `key` in the current language. Returns an unknown key itself, and a null
/// view for a null view. Main thread.
std::string_view L(std::string_view key);

/// `textTemplate` with its placeholder, %@ or %d, replaced by `value`. Placeholders in
/// `value` are kept. A template without a placeholder is returned as it is. Any thread.
std::string filled(std::string_view textTemplate, std::string_view value);

} // namespace oxlade
