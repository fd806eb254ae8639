// Light and dark, also while the window is open.
#include "tests/ui/program.h"
#include "ui/palette.h"

namespace oxlade::test {
namespace {

constexpr auto light = ColorScheme::light, dark = ColorScheme::dark;

class AppearanceTest : public ProgramTest {
  protected:
    static void setDesktop(const QColor& window, const QColor& text) {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }
    static void setLightDesktop() { setDesktop({0xEE, 0xEE, 0xEE}, Qt::black); }
    void prefer(std::optional<ColorScheme> scheme) {
        program.interface->setColorScheme(scheme);
        QApplication::processEvents();
    }
    QColor pixel(int x, int yUp) { return picture().pixelColor(x, 620 - 1 - yUp); }
    QColor ground() { return pixel(5, 5); }
    QColor statusDot() { return pixel(300 + 22, 416 + 60); }
};

TEST_F(AppearanceTest, FollowsAPaletteThatTurnsDarkWhileTheWindowIsOpen) {
    EXPECT_EQ(ground(), groundColor(light));
    setDesktop({0x30, 0x30, 0x30}, Qt::white);
    EXPECT_EQ(ground(), groundColor(dark));
    EXPECT_EQ(pixel(310, 500), cardColor(dark));
    EXPECT_EQ(pixel(700, 60), logColor(dark));
    setLightDesktop();
    EXPECT_EQ(ground(), groundColor(light));
}

TEST_F(AppearanceTest, ThePreferenceOverridesThePaletteForAllButTheFigure) {
    program.delegate->checkDevice();
    EXPECT_EQ(statusDot(), color(SemanticColor::systemOrangeColor, light));
    const QColor figuresFrame = pixel(28, 424), figuresScreen = pixel(40, 424);
    prefer(dark);
    EXPECT_EQ(ground(), groundColor(dark));
    EXPECT_EQ(statusDot(), color(SemanticColor::systemOrangeColor, dark));
    EXPECT_EQ(pixel(28, 424), figuresFrame);
    EXPECT_EQ(pixel(40, 424), figuresScreen);
    setLightDesktop();
    EXPECT_EQ(ground(), groundColor(dark));
    prefer(std::nullopt);
    EXPECT_EQ(ground(), groundColor(light));
}

TEST(Appearance, RestoresTheDesktopsPalette) {
    const QPalette before = QApplication::palette();
    {
        Program program;
        program.interface->setColorScheme(dark);
        EXPECT_EQ(schemeOf(QApplication::palette()), dark);
    }
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), before.color(QPalette::Window));
}

} // namespace
} // namespace oxlade::test
