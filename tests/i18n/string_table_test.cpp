#include "i18n/string_table.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace oxlade::test {

class StringTable : public ::testing::Test {
  protected:
    ~StringTable() override { CurrentLanguage = 0; }
};

// How many keys there are, and that none is there twice, is proved while compiling.
TEST_F(StringTable, HoldsTheKeysOfItsAreas) {
    std::set<std::string_view> areas;
    for (const auto& entry : translations()) areas.insert(entry.key.substr(0, entry.key.find('.')));
    EXPECT_EQ(areas,
              (std::set<std::string_view>{"button", "confirm", "device", "done", "failed",
                                          "firmware", "log", "menu", "op", "panel", "subtitle"}));
}

TEST_F(StringTable, LooksUpInTheLanguageThatIsCurrentNow) {
    EXPECT_EQ(L("op.ready"), "Ready");
    CurrentLanguage = 1;
    EXPECT_EQ(L("op.ready"), "Готово");
    CurrentLanguage = 0;
    EXPECT_EQ(L("op.ready"), "Ready");
}

TEST_F(StringTable, FindsEveryKeyInBothLanguages) {
    for (const auto& entry : translations())
        for (std::size_t language = 0; language < 2; ++language) {
            CurrentLanguage = static_cast<std::int64_t>(language);
            EXPECT_EQ(L(entry.key), entry.texts[language]);
        }
}

TEST_F(StringTable, HoldsTheRussianTextsThatNoOtherTestReads) {
    CurrentLanguage = 1;
    EXPECT_EQ(L("device.checking.detail"), "Открываю USB-интерфейс и читаю flash geometry.");
    EXPECT_EQ(L("device.failed.detail"),
              "Проверьте USB, режим OS Loader и разрешение macOS на доступ к устройству.");
    EXPECT_EQ(L("device.unknown.detail"),
              "Подключите MPC4000 по USB и включите режим OS Loader на устройстве.");
    EXPECT_EQ(L("firmware.invalid.small"), "Файл слишком маленький для прошивки MPC4000.");
    EXPECT_EQ(L("panel.message"), "Выберите файл OS для MPC4000");
    EXPECT_EQ(L("confirm.text"), "Flash-память будет стерта перед записью. Не выключайте MPC4000 и "
                                 "не отключайте USB до завершения.");
    EXPECT_EQ(L("log.helperFailed"), "Не удалось запустить helper: %@");
    EXPECT_EQ(L("log.helperMissing"), "Не найден helper: %@");
}

TEST_F(StringTable, AnUnknownKeyIsItsOwnText) {
    for (const std::string_view key : {"op.readyy", "op", "", "Op.ready", "zzz", "a", "op.ready "})
        for (CurrentLanguage = 0; CurrentLanguage < 2; ++CurrentLanguage) EXPECT_EQ(L(key), key);
    CurrentLanguage = 0;
}

TEST_F(StringTable, ANullKeyGivesNull) {
    EXPECT_EQ(L(std::string_view{}).data(), nullptr);
    EXPECT_NE(L("").data(), nullptr);
}

TEST_F(StringTable, TheEllipsisIsOneCharacter) {
    for (const auto& entry : translations())
        for (const auto text : entry.texts)
            EXPECT_EQ(text.find("..."), std::string_view::npos) << text;
    EXPECT_EQ(L("button.choose"), "Choose\u2026");
    EXPECT_EQ(L("device.checking"), "Checking MPC4000\u2026");
}

TEST_F(StringTable, FourTextsAreTemplatesAndNoOther) {
    const std::set<std::string_view> templates{"log.exit", "log.firmware", "log.helperFailed",
                                               "log.helperMissing"};
    for (const auto& entry : translations())
        for (const auto text : entry.texts)
            EXPECT_EQ(text.find('%') != std::string_view::npos, templates.contains(entry.key));
}

TEST_F(StringTable, TheTextsOfTheTwoDoneKeysAreTheSame) {
    for (CurrentLanguage = 0; CurrentLanguage < 2; ++CurrentLanguage)
        EXPECT_EQ(L("done.title"), L("op.done"));
}

TEST_F(StringTable, ATemplateIsFilledOnceAndItsValueIsNotReadAsATemplate) {
    EXPECT_EQ(filled("Firmware selected: %@", "/a b"), "Firmware selected: /a b");
    EXPECT_EQ(filled("code %d.", "-1"), "code -1.");
    EXPECT_EQ(filled("x %@", "%@ %d %s %n"), "x %@ %d %s %n");
    EXPECT_EQ(filled("none", "value"), "none");
}

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
