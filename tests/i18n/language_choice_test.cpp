#include "i18n/language_choice.h"

#include <gtest/gtest.h>
#include <vector>

namespace oxlade::test {

using Languages = std::vector<std::string>;

TEST(LanguageChoice, AStoredChoiceWinsWhateverItHolds) {
    EXPECT_EQ(languageAtStart("ru", Languages{"en-US"}), 1);
    EXPECT_EQ(languageAtStart("rubbish", Languages{"en-US"}), 1);
    for (const auto* stored : {"en", "", "fr", "RU", "Ru", " ru"})
        EXPECT_EQ(languageAtStart(stored, Languages{"ru-RU"}), 0) << stored;
}

TEST(LanguageChoice, WithoutAStoredChoiceTheFirstPreferredLanguageDecides) {
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"ru-RU", "en-US"}), 1);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"ru"}), 1);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"uk-UA", "ru-RU"}), 0);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"en-US"}), 0);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{}), 0);
}

} // namespace oxlade::test
