// Whether everything can be read, in both appearances.
#include "tests/ui/program.h"
#include "ui/control_drawing.h"
#include "ui/palette.h"

#include <QApplication>
#include <QImage>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

constexpr double readable = 4.5;
constexpr ColorScheme schemes[] = {ColorScheme::light, ColorScheme::dark};

class Contrast : public ::testing::TestWithParam<ColorScheme> {};
INSTANTIATE_TEST_SUITE_P(InBothAppearances, Contrast, ::testing::ValuesIn(schemes),
                         [](const auto& instance) {
                             return instance.param == ColorScheme::dark ? "Dark" : "Light";
                         });

void expectReadable(SemanticColor text, const QColor& below, const char* what) {
    const QColor painted = over(color(text, schemeOf(QApplication::palette())), below);
    EXPECT_GE(contrast(painted, below), readable) << what;
}

TEST_P(Contrast, LabelsCanBeReadOnWhatIsPaintedUnderThem) {
    Program program;
    program.interface->setColorScheme(GetParam());
    program.start();
    // What is really painted: a pixel of each ground, taken from a picture.
    const QImage picture = program.window().content().grab().toImage();
    const auto at = [&](int x, int yUp) { return QColor{picture.pixel(x, 620 - 1 - yUp)}; };
    const QColor ground = at(5, 5), card = at(310, 500), log = at(700, 60);
    expectReadable(SemanticColor::labelColor, ground, "title on the ground");
    expectReadable(SemanticColor::secondaryLabelColor, ground, "subtitle on the ground");
    expectReadable(SemanticColor::linkColor, ground, "link on the ground");
    expectReadable(SemanticColor::labelColor, card, "status on a card");
    expectReadable(SemanticColor::secondaryLabelColor, card, "detail on a card");
    expectReadable(SemanticColor::labelColor, log, "log");
    EXPECT_EQ(ground, groundColor(GetParam()));
    EXPECT_EQ(card, cardColor(GetParam()));
    EXPECT_EQ(log, logColor(GetParam()));
}

TEST_P(Contrast, EnabledButtonsCanBeReadHoveredAndPressedToo) {
    const QColor card = cardColor(GetParam()), ground = groundColor(GetParam());
    const QColor accents[] = {accentColor(GetParam()), Qt::yellow, Qt::darkBlue,
                              QColor{0xE9, 0x54, 0x20}, QColor{0x8A, 0xB4, 0xF8}};
    for (const QColor& accent : accents)
        for (const bool filled : {false, true})
            for (const bool hovered : {false, true})
                for (const bool pressed : {false, true})
                    for (const QColor& below : {card, ground}) {
                        const QPalette palette = interfacePalette(GetParam(), accent);
                        const ButtonColors colors =
                            buttonColors(palette, {true, hovered, pressed, filled});
                        const QColor fill = over(colors.fill, below);
                        EXPECT_GE(contrast(over(colors.text, fill), fill), readable)
                            << accent.name().toStdString() << filled << hovered << pressed;
                    }
}

TEST_P(Contrast, BothLanguagesCanBeReadInTheSwitch) {
    const QPalette palette = interfacePalette(GetParam(), accentColor(GetParam()));
    const SwitchColors colors = switchColors(palette);
    const QColor trough = over(colors.trough, groundColor(GetParam()));
    EXPECT_GE(contrast(over(colors.otherText, trough), trough), readable);
    const QColor thumb = over(colors.thumb, trough);
    EXPECT_GE(contrast(over(colors.chosenText, thumb), thumb), readable);
}

TEST_P(Contrast, SelectedTextAndMenusCanBeRead) {
    for (const QColor& accent : {accentColor(GetParam()), QColor{Qt::yellow}}) {
        const QPalette palette = interfacePalette(GetParam(), accent);
        const auto pair = [&](QPalette::ColorRole text, QPalette::ColorRole below) {
            return contrast(palette.color(text), palette.color(below));
        };
        EXPECT_GE(pair(QPalette::HighlightedText, QPalette::Highlight), readable);
        EXPECT_GE(pair(QPalette::WindowText, QPalette::Window), readable);
        EXPECT_GE(pair(QPalette::Text, QPalette::Base), readable);
        EXPECT_GE(pair(QPalette::ButtonText, QPalette::Button), readable);
        EXPECT_GE(pair(QPalette::ToolTipText, QPalette::ToolTipBase), readable);
    }
}

TEST_P(Contrast, TheFocusRingAndTheBarCanBeSeen) {
    const QPalette palette = interfacePalette(GetParam(), accentColor(GetParam()));
    const QColor card = cardColor(GetParam());
    EXPECT_GE(contrast(markColor(palette), card), 3);
    EXPECT_GE(contrast(barColors(palette).done, over(barColors(palette).trough, card)), 2);
}

TEST(Palette, ContrastIsThatOfTheFormula) {
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.001);
    EXPECT_NEAR(contrast(Qt::red, Qt::red), 1, 0.001);
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(Palette, TheSchemeIsThatOfWindowAndText) {
    EXPECT_EQ(schemeOf(interfacePalette(ColorScheme::dark, Qt::blue)), ColorScheme::dark);
    EXPECT_EQ(schemeOf(interfacePalette(ColorScheme::light, Qt::blue)), ColorScheme::light);
}

TEST(Palette, TheAccentIsTheDesktopsWhereItHasOne) {
    QPalette desktop;
    desktop.setColor(QPalette::Highlight, QColor{0xE9, 0x54, 0x20});
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), QColor(0xE9, 0x54, 0x20));
}

TEST(Palette, AnAccentThatCouldNotBeSeenIsNotTaken) {
    QPalette desktop;
    desktop.setColor(QPalette::Highlight, QColor{0xFA, 0xFA, 0xFA});
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), accentColor(ColorScheme::light));
    EXPECT_EQ(accentOf(desktop, ColorScheme::dark), QColor(0xFA, 0xFA, 0xFA));
}

TEST(Palette, AStylesOwnHighlightIsNoAccent) {
    const QPalette plain = QApplication::palette();
    EXPECT_EQ(accentOf(plain, ColorScheme::light), accentColor(ColorScheme::light));
}

} // namespace
} // namespace oxlade::test
