#include "i18n/string_table.h"

#include <unordered_map>

namespace oxlade {

std::int64_t CurrentLanguage = 0;

namespace {

// Some words are English in the Russian texts, too: the sampler and the helper use them.
// clang-format off
constexpr std::array<Translation, translationCount> Translations{{
    {"button.bundled",
     {"Bundled",
      "Встроенная"}},
    {"button.check",
     {"Check",
      "Проверить"}},
    {"button.choose",
     {"Choose…",
      "Выбрать…"}},
    {"button.install",
     {"Flash OS",
      "Прошить OS"}},
    {"confirm.cancel",
     {"Cancel",
      "Отмена"}},
    {"confirm.ok",
     {"Flash",
      "Прошить"}},
    {"confirm.text",
     {"Flash memory is erased before writing. Do not power off the MPC4000 or unplug USB until it finishes.",
      "Flash-память будет стерта перед записью. Не выключайте MPC4000 и не отключайте USB до завершения."}},
    {"confirm.title",
     {"Flash the OS to the MPC4000?",
      "Прошить OS в MPC4000?"}},
    {"device.caption",
     {"DEVICE",
      "УСТРОЙСТВО"}},
    {"device.checking",
     {"Checking MPC4000…",
      "Проверяю MPC4000…"}},
    {"device.checking.detail",
     {"Opening the USB interface and reading the flash geometry.",
      "Открываю USB-интерфейс и читаю flash geometry."}},
    {"device.failed",
     {"MPC4000 not opened",
      "MPC4000 не открыт"}},
    {"device.failed.detail",
     {"Check USB, OS Loader mode and the macOS permission to access the device.",
      "Проверьте USB, режим OS Loader и разрешение macOS на доступ к устройству."}},
    {"device.ready",
     {"MPC4000 connected",
      "MPC4000 подключен"}},
    {"device.unknown",
     {"MPC4000 not checked",
      "MPC4000 не проверен"}},
    {"device.unknown.detail",
     {"Connect the MPC4000 over USB and switch it to OS Loader mode.",
      "Подключите MPC4000 по USB и включите режим OS Loader на устройстве."}},
    {"done.text",
     {"Wait for the MPC4000 to finish, then restart it.",
      "Дождитесь завершения на MPC4000, затем перезагрузите устройство."}},
    {"done.title",
     {"Flashing complete",
      "Прошивка завершена"}},
    {"failed.text",
     {"See the log at the bottom of the window.",
      "Смотрите журнал в нижней части окна."}},
    {"failed.title",
     {"Flashing did not complete",
      "Прошивка не завершилась"}},
    {"firmware.bundledMissing",
     {"No bundled firmware. Choose a .bin file.",
      "Встроенной прошивки нет. Выберите .bin файл."}},
    {"firmware.caption",
     {"FIRMWARE",
      "ПРОШИВКА"}},
    {"firmware.invalid.signature",
     {"The file has no MPC4000 Operating System signature.",
      "В файле нет сигнатуры MPC4000 Operating System."}},
    {"firmware.invalid.small",
     {"The file is too small to be MPC4000 firmware.",
      "Файл слишком маленький для прошивки MPC4000."}},
    {"firmware.invalid.title",
     {"This does not look like MPC4000 firmware",
      "Это не похоже на прошивку MPC4000"}},
    {"firmware.none",
     {"No firmware selected",
      "Прошивка не выбрана"}},
    {"log.caption",
     {"LOG",
      "ЖУРНАЛ"}},
    {"log.exit",
     {"Process exited with code %d.",
      "Процесс завершился с кодом %d."}},
    {"log.firmware",
     {"Firmware selected: %@",
      "Выбрана прошивка: %@"}},
    {"log.helperFailed",
     {"Could not start the helper: %@",
      "Не удалось запустить helper: %@"}},
    {"log.helperMissing",
     {"Helper not found: %@",
      "Не найден helper: %@"}},
    {"log.started",
     {"Oxlade started.",
      "Oxlade запущен."}},
    {"menu.copy",
     {"Copy",
      "Скопировать"}},
    {"menu.edit",
     {"Edit",
      "Правка"}},
    {"menu.quit",
     {"Quit Oxlade",
      "Завершить Oxlade"}},
    {"menu.selectAll",
     {"Select All",
      "Выбрать все"}},
    {"op.checkFailed",
     {"Check failed",
      "Проверка не удалась"}},
    {"op.checking",
     {"Checking the connection",
      "Проверка подключения"}},
    {"op.deviceReady",
     {"Device is ready",
      "Устройство готово"}},
    {"op.done",
     {"Flashing complete",
      "Прошивка завершена"}},
    {"op.erase",
     {"Erasing flash",
      "Стирание flash"}},
    {"op.error",
     {"Flashing failed",
      "Ошибка прошивки"}},
    {"op.flashing",
     {"Flashing the MPC4000",
      "Прошивка MPC4000"}},
    {"op.ready",
     {"Ready",
      "Готово"}},
    {"op.write",
     {"Writing OS",
      "Запись OS"}},
    {"panel.message",
     {"Choose an OS file for the MPC4000",
      "Выберите файл OS для MPC4000"}},
    {"subtitle",
     {"Install the OS on an Akai MPC4000 over USB",
      "Загрузка OS в Akai MPC4000 через USB"}},
}};
// clang-format on

constexpr std::string_view placeholders[] = {"%@", "%d"};

constexpr std::string_view placeholderOf(std::string_view text) {
    for (const auto placeholder : placeholders)
        if (text.find(placeholder) != std::string_view::npos) return placeholder;
    return {};
}

static_assert(
    [] {
        for (std::size_t i = 1; i < Translations.size(); ++i)
            if (Translations[i - 1].key >= Translations[i].key) return false;
        return true;
    }(),
    "the keys are sorted, without repeats");

static_assert(
    [] {
        for (const auto& [key, texts] : Translations)
            if (placeholderOf(texts[0]) != placeholderOf(texts[1])) return false;
        return true;
    }(),
    "the texts of a template need the same placeholder");

} // namespace

std::int64_t languageAtStart(const std::optional<std::string>& stored,
                             std::span<const std::string> preferredLanguages) {
    std::string_view code;
    if (stored)
        code = *stored;
    else if (!preferredLanguages.empty())
        code = preferredLanguages.front();
    return code.starts_with("ru") ? 1 : 0;
}

std::span<const Translation, translationCount> translations() { return Translations; }

const Translation* translationOf(std::string_view key) {
    static const auto translationOfKey = [] {
        std::unordered_map<std::string_view, const Translation*> entries;
        for (const auto& each : Translations) entries.emplace(each.key, &each);
        return entries;
    }();
    const auto found = translationOfKey.find(key);
    return found == translationOfKey.end() ? nullptr : found->second;
}

std::string_view textOf(const Translation& translation) {
    return translation.texts[static_cast<std::size_t>(CurrentLanguage)];
}

std::string_view L(std::string_view key) {
    const auto* const translation = translationOf(key);
    return translation == nullptr ? key : textOf(*translation);
}

std::string filled(std::string_view textTemplate, std::string_view value) {
    std::string text{textTemplate};
    const auto placeholder = placeholderOf(textTemplate);
    if (!placeholder.empty()) text.replace(text.find(placeholder), placeholder.size(), value);
    return text;
}

} // namespace oxlade
