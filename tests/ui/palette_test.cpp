// Whether everything can be read and seen, in both appearances.
#include "tests/ui/program.h"
#include "ui/palette.h"

namespace oxlade::test {
namespace {

constexpr double readable = 4.5;
constexpr ColorScheme schemes[] = {ColorScheme::light, ColorScheme::dark};

class Contrast : public ::testing::TestWithParam<ColorScheme> {};
INSTANTIATE_TEST_SUITE_P(InBothAppearances, Contrast, ::testing::ValuesIn(schemes),
                         [](const auto& instance) {
                             return instance.param == ColorScheme::dark ? "Dark" : "Light";
                         });

TEST_P(Contrast, LabelsCanBeReadOnTheirGround) {
    const auto expectReadable = [](SemanticColor text, const QColor& below, const char* what) {
        EXPECT_GE(contrast(over(color(text, GetParam()), below), below), readable) << what;
    };
    const QColor ground = groundColor(GetParam()), card = cardColor(GetParam()),
                 log = logColor(GetParam());
    expectReadable(SemanticColor::labelColor, ground, "title on the ground");
    expectReadable(SemanticColor::secondaryLabelColor, ground, "subtitle on the ground");
    expectReadable(SemanticColor::linkColor, ground, "link on the ground");
    expectReadable(SemanticColor::labelColor, card, "status on a card");
    expectReadable(SemanticColor::secondaryLabelColor, card, "detail on a card");
    expectReadable(SemanticColor::labelColor, log, "log");
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
    const SegmentColors colors = segmentColors(palette);
    const QColor groove = over(colors.groove, groundColor(GetParam()));
    EXPECT_GE(contrast(over(colors.otherText, groove), groove), readable);
    const QColor thumb = over(colors.thumb, groove);
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
    EXPECT_GE(contrast(markColor(palette), over(progressGrooveColor(palette), card)), 2);
    const QColor menu = palette.color(QPalette::Button);
    EXPECT_GE(contrast(popupEdgeColor(menu, palette), menu), 1.2);
}

TEST(Palette, ContrastIsThatOfTheFormula) {
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.001);
    EXPECT_NEAR(contrast(Qt::red, Qt::red), 1, 0.001);
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(Palette, TheAccentIsTheDesktopsWhereItHasOne) {
    QPalette desktop;
    desktop.setColor(QPalette::Highlight, QColor{0xE9, 0x54, 0x20});
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), QColor(0xE9, 0x54, 0x20));
}

TEST(Palette, AnAccentThatDoesNotStandOutIsNotTaken) {
    QPalette desktop;
    desktop.setColor(QPalette::Highlight, QColor{0xFA, 0xFA, 0xFA});
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), accentColor(ColorScheme::light));
    EXPECT_EQ(accentOf(desktop, ColorScheme::dark), QColor(0xFA, 0xFA, 0xFA));
}

TEST(Palette, FusionsOwnHighlightIsNoAccent) {
    const QPalette plain = QApplication::palette();
    EXPECT_EQ(accentOf(plain, ColorScheme::light), accentColor(ColorScheme::light));
}

} // namespace
} // namespace oxlade::test
