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
    const QColor ground = groundColor(GetParam()), card = cardColor(GetParam());
    const std::pair<SemanticColor, QColor> labels[] = {
        {SemanticColor::labelColor, ground},
        {SemanticColor::labelColor, card},
        {SemanticColor::secondaryLabelColor, ground},
        {SemanticColor::secondaryLabelColor, card},
        {SemanticColor::linkColor, ground},
        {SemanticColor::labelColor, logColor(GetParam())}};
    for (const auto& [text, below] : labels)
        EXPECT_GE(contrast(over(color(text, GetParam()), below), below), readable)
            << static_cast<int>(text) << " on " << below.name().toStdString();
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

TEST(Palette, TheAccentIsTheDesktopsWhereItHasOneThatStandsOut) {
    const QColor orange{0xE9, 0x54, 0x20}, pale{0xFA, 0xFA, 0xFA};
    const auto own = accentColor(ColorScheme::light);
    QPalette desktop = QApplication::palette();
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), own) << "Fusion's own highlight";
    desktop.setColor(QPalette::Highlight, orange);
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), orange);
    desktop.setColor(QPalette::Highlight, pale);
    EXPECT_EQ(accentOf(desktop, ColorScheme::light), own);
    EXPECT_EQ(accentOf(desktop, ColorScheme::dark), pale);
}

} // namespace
} // namespace oxlade::test
