#include "i18n/string_table.h"

#include <gtest/gtest.h>
#include <vector>

namespace oxlade::test {

class StringTable : public ::testing::Test {
  protected:
    ~StringTable() override { CurrentLanguage = 0; }
};

TEST_F(StringTable, HoldsThese47KeysWithThese94Texts) {
    std::string table;
    for (const auto& [key, texts] : translations()) {
        table += std::string{key};
        for (CurrentLanguage = 0; CurrentLanguage < 2; ++CurrentLanguage)
            table += " \"" + std::string{L(key)} + '"';
        table += '\n';
    }
    EXPECT_EQ(table, R"(button.bundled "Bundled" "Встроенная"
button.check "Check" "Проверить"
button.choose "Choose…" "Выбрать…"
button.install "Flash OS" "Прошить OS"
confirm.cancel "Cancel" "Отмена"
confirm.ok "Flash" "Прошить"
confirm.text "Flash memory is erased before writing. Do not power off the MPC4000 or unplug USB until it finishes." "Flash-память будет стерта перед записью. Не выключайте MPC4000 и не отключайте USB до завершения."
confirm.title "Flash the OS to the MPC4000?" "Прошить OS в MPC4000?"
device.caption "DEVICE" "УСТРОЙСТВО"
device.checking "Checking MPC4000…" "Проверяю MPC4000…"
device.checking.detail "Opening the USB interface and reading the flash geometry." "Открываю USB-интерфейс и читаю flash geometry."
device.failed "MPC4000 not opened" "MPC4000 не открыт"
device.failed.detail "Check USB, OS Loader mode and the macOS permission to access the device." "Проверьте USB, режим OS Loader и разрешение macOS на доступ к устройству."
device.ready "MPC4000 connected" "MPC4000 подключен"
device.unknown "MPC4000 not checked" "MPC4000 не проверен"
device.unknown.detail "Connect the MPC4000 over USB and switch it to OS Loader mode." "Подключите MPC4000 по USB и включите режим OS Loader на устройстве."
done.text "Wait for the MPC4000 to finish, then restart it." "Дождитесь завершения на MPC4000, затем перезагрузите устройство."
done.title "Flashing complete" "Прошивка завершена"
failed.text "See the log at the bottom of the window." "Смотрите журнал в нижней части окна."
failed.title "Flashing did not complete" "Прошивка не завершилась"
firmware.bundledMissing "No bundled firmware. Choose a .bin file." "Встроенной прошивки нет. Выберите .bin файл."
firmware.caption "FIRMWARE" "ПРОШИВКА"
firmware.invalid.signature "The file has no MPC4000 Operating System signature." "В файле нет сигнатуры MPC4000 Operating System."
firmware.invalid.small "The file is too small to be MPC4000 firmware." "Файл слишком маленький для прошивки MPC4000."
firmware.invalid.title "This does not look like MPC4000 firmware" "Это не похоже на прошивку MPC4000"
firmware.none "No firmware selected" "Прошивка не выбрана"
log.caption "LOG" "ЖУРНАЛ"
log.exit "Process exited with code %d." "Процесс завершился с кодом %d."
log.firmware "Firmware selected: %@" "Выбрана прошивка: %@"
log.helperFailed "Could not start the helper: %@" "Не удалось запустить helper: %@"
log.helperMissing "Helper not found: %@" "Не найден helper: %@"
log.started "Oxlade started." "Oxlade запущен."
menu.copy "Copy" "Скопировать"
menu.edit "Edit" "Правка"
menu.quit "Quit Oxlade" "Завершить Oxlade"
menu.selectAll "Select All" "Выбрать все"
op.checkFailed "Check failed" "Проверка не удалась"
op.checking "Checking the connection" "Проверка подключения"
op.deviceReady "Device is ready" "Устройство готово"
op.done "Flashing complete" "Прошивка завершена"
op.erase "Erasing flash" "Стирание flash"
op.error "Flashing failed" "Ошибка прошивки"
op.flashing "Flashing the MPC4000" "Прошивка MPC4000"
op.ready "Ready" "Готово"
op.write "Writing OS" "Запись OS"
panel.message "Choose an OS file for the MPC4000" "Выберите файл OS для MPC4000"
subtitle "Install the OS on an Akai MPC4000 over USB" "Загрузка OS в Akai MPC4000 через USB"
)");
}

TEST_F(StringTable, AnUnknownKeyIsItsOwnText) {
    for (const std::string_view key : {"op.readyy", "op", "", "Op.ready", "zzz", "a", "op.ready "})
        for (CurrentLanguage = 0; CurrentLanguage < 2; ++CurrentLanguage) EXPECT_EQ(L(key), key);
}

TEST_F(StringTable, ANullKeyIsItsOwnText) {
    EXPECT_EQ(L(std::string_view{}).data(), nullptr);
    EXPECT_NE(L("").data(), nullptr);
}

TEST_F(StringTable, APlaceholderIsReplacedOnceAndOnlyInTheTemplate) {
    EXPECT_EQ(filled("Firmware selected: %@", "/a b"), "Firmware selected: /a b");
    EXPECT_EQ(filled("code %d.", "-1"), "code -1.");
    EXPECT_EQ(filled("x %@", "%@ %d %s %n"), "x %@ %d %s %n");
    EXPECT_EQ(filled("none", "value"), "none");
}

using Languages = std::vector<std::string>;

TEST(LanguageChoice, AStoredChoiceWinsWhateverItIs) {
    for (const auto* stored : {"ru", "rubbish"})
        EXPECT_EQ(languageAtStart(stored, Languages{"en-US"}), 1) << stored;
    for (const auto* stored : {"en", "", "fr", "RU", "Ru", " ru", "r"})
        EXPECT_EQ(languageAtStart(stored, Languages{"ru-RU"}), 0) << stored;
}

TEST(LanguageChoice, WithoutAStoredChoiceTheFirstPreferredLanguageDecides) {
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"ru-RU", "en-US"}), 1);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"ru"}), 1);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{"uk-UA", "ru-RU"}), 0);
    EXPECT_EQ(languageAtStart(std::nullopt, Languages{}), 0);
}

} // namespace oxlade::test
