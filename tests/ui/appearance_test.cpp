// Light and dark, also while the window is open.
#include "tests/ui/program.h"
#include "ui/palette.h"

namespace oxlade::test {
namespace {

QPalette desktopPalette(const QColor& window, const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}
QPalette darkDesktop() { return desktopPalette({0x30, 0x30, 0x30}, Qt::white); }
QPalette lightDesktop() { return desktopPalette({0xEE, 0xEE, 0xEE}, Qt::black); }

class AppearanceTest : public ProgramTest {
  protected:
    QColor pixel(int x, int yUp) { return picture().pixelColor(x, 620 - 1 - yUp); }
    QColor ground() { return pixel(5, 5); }
};

TEST_F(AppearanceTest, FollowsAPaletteThatTurnsDarkWhileTheWindowIsOpen) {
    EXPECT_EQ(ground(), groundColor(ColorScheme::light));
    QApplication::setPalette(darkDesktop());
    QApplication::processEvents();
    EXPECT_EQ(ground(), groundColor(ColorScheme::dark));
    EXPECT_EQ(pixel(310, 500), cardColor(ColorScheme::dark));
    EXPECT_EQ(pixel(700, 60), logColor(ColorScheme::dark));
    QApplication::setPalette(lightDesktop());
    QApplication::processEvents();
    EXPECT_EQ(ground(), groundColor(ColorScheme::light));
}

TEST_F(AppearanceTest, ThePreferenceOverridesThePalette) {
    program.interface->setColorScheme(ColorScheme::dark);
    QApplication::processEvents();
    EXPECT_EQ(ground(), groundColor(ColorScheme::dark));
    QApplication::setPalette(lightDesktop());
    QApplication::processEvents();
    EXPECT_EQ(ground(), groundColor(ColorScheme::dark));
    program.interface->setColorScheme(std::nullopt);
    QApplication::processEvents();
    EXPECT_EQ(ground(), groundColor(ColorScheme::light));
}

TEST_F(AppearanceTest, TheStatusDotFollowsAtOnce) {
    program.delegate->checkDevice();
    const QPoint centre{300 + 22, 416 + 60};
    EXPECT_EQ(pixel(centre.x(), centre.y()),
              color(SemanticColor::systemOrangeColor, ColorScheme::light));
    program.interface->setColorScheme(ColorScheme::dark);
    QApplication::processEvents();
    EXPECT_EQ(pixel(centre.x(), centre.y()),
              color(SemanticColor::systemOrangeColor, ColorScheme::dark));
}

TEST_F(AppearanceTest, TheFiguresPanelKeepsItsColours) {
    const QColor frame = pixel(28, 424), screen = pixel(40, 424);
    program.interface->setColorScheme(ColorScheme::dark);
    QApplication::processEvents();
    EXPECT_EQ(pixel(28, 424), frame);
    EXPECT_EQ(pixel(40, 424), screen);
}

TEST(Appearance, RestoresTheDesktopsPalette) {
    const QPalette before = QApplication::palette();
    {
        Program program;
        program.interface->setColorScheme(ColorScheme::dark);
        EXPECT_EQ(schemeOf(QApplication::palette()), ColorScheme::dark);
    }
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), before.color(QPalette::Window));
}

} // namespace
} // namespace oxlade::test
