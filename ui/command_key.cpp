#include "ui/command_key.h"

#include <QKeyEvent>

#include <string_view>

namespace oxlade {
namespace {

/// By the key codes of X11, which Qt gives on Wayland, too.
char letterAt(quint32 scanCode) {
    struct Row {
        quint32 first;
        std::string_view letters;
    };
    for (const Row& row : {Row{24, "qwertyuiop"}, Row{38, "asdfghjkl"}, Row{52, "zxcvbnm"}})
        if (scanCode >= row.first && scanCode - row.first < row.letters.size())
            return row.letters[scanCode - row.first];
    return 0;
}

} // namespace

char commandLetter(const QKeyEvent& event) {
    if (event.modifiers() != Qt::ControlModifier) return 0;
    const int key = event.key();
    if (key >= Qt::Key_A && key <= Qt::Key_Z) return static_cast<char>('a' + (key - Qt::Key_A));
    constexpr int lastLatin = 0xFF;
    return key > lastLatin && key < Qt::Key_Escape ? letterAt(event.nativeScanCode()) : '\0';
}

} // namespace oxlade
