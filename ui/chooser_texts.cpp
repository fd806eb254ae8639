#include "ui/chooser_texts.h"

#include <QString>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace oxlade {
namespace {

struct ChooserText {
    std::string_view english; ///< as in Qt's sources
    std::u16string_view russian;
};

constexpr ChooserText chooserTexts[] = {
    // The dialog
    {"Look in:", u"Папка:"},
    {"File &name:", u"&Имя файла:"},
    {"Files of type:", u"Тип файлов:"},
    {"&Open", u"&Открыть"},
    {"Open", u"Открыть"},
    {"&Choose", u"&Выбрать"},
    {"Cancel", u"Отмена"},
    {"OK", u"ОК"},
    {"All Files (*)", u"Все файлы (*)"},
    {"All files (*)", u"Все файлы (*)"},
    {"Files", u"Файлы"},
    {"Sidebar", u"Боковая панель"},
    {"List of places and bookmarks", u"Список мест и закладок"},
    {"Recent Places", u"Недавние места"},
    {"Computer", u"Компьютер"},
    {"My Computer", u"Мой компьютер"},
    // Its tool buttons
    {"Back", u"Назад"},
    {"Go back", u"Вернуться назад"},
    {"Forward", u"Вперед"},
    {"Go forward", u"Перейти вперед"},
    {"Parent Directory", u"Вверх"},
    {"Go to the parent directory", u"Перейти в папку уровнем выше"},
    {"Create New Folder", u"Новая папка"},
    {"Create a New Folder", u"Создать новую папку"},
    {"List View", u"Список"},
    {"Change to list view mode", u"Показать файлы списком"},
    {"Detail View", u"Таблица"},
    {"Change to detail view mode", u"Показать файлы таблицей"},
    // The columns
    {"Name", u"Имя"},
    {"Size", u"Размер"},
    {"Type", u"Тип"},
    {"Kind", u"Тип"},
    {"Date Modified", u"Дата изменения"},
    {"Drive", u"Диск"},
    {"Folder", u"Папка"},
    {"File Folder", u"Папка"},
    {"File", u"Файл"},
    {"%1 File", u"Файл %1"},
    {"Shortcut", u"Ссылка"},
    {"Alias", u"Ссылка"},
    {"Unknown", u"Неизвестный"},
    // Its menus
    {"Show ", u"Показать: "}, // a column
    {"&Rename", u"&Переименовать"},
    {"&Delete", u"&Удалить"},
    {"Delete", u"Удалить"},
    {"Remove", u"Убрать"},
    {"&New Folder", u"&Новая папка"},
    {"Show &hidden files", u"Показать &скрытые файлы"},
    {"&Undo", u"&Отменить"},
    {"&Redo", u"&Повторить"},
    {"Cu&t", u"&Вырезать"},
    {"&Copy", u"&Скопировать"},
    {"&Paste", u"Вст&авить"},
    {"Select All", u"Выбрать все"},
    // Its messages
    {"%1\nFile not found.\nPlease verify the correct file name was given.",
     u"%1\nФайл не найден.\nПроверьте, правильно ли указано имя."},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     u"%1\nПапка не найдена.\nПроверьте, правильно ли указано имя."},
};

} // namespace

QString RussianChooserTexts::translate(const char* context, const char* sourceText, const char*,
                                       int) const {
    if (std::string_view{context} == "QShortcut") return {};
    const auto found =
        std::find_if(std::begin(chooserTexts), std::end(chooserTexts),
                     [sourceText](const ChooserText& text) { return text.english == sourceText; });
    if (found == std::end(chooserTexts)) return {};
    return QString::fromUtf16(found->russian.data(), static_cast<qsizetype>(found->russian.size()));
}

} // namespace oxlade
