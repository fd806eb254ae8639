// What the first frame need not wait for.
#include "platform/font_cache.h"
#include "tests/gui/program.h"
#include "ui/fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QImage>
#include <QMenuBar>
#include <QToolButton>

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

int threadsOfThePool() {
    int count = 0;
    for (const auto& thread : std::filesystem::directory_iterator{"/proc/self/task"}) {
        std::string name;
        std::getline(std::ifstream{thread.path() / "comm"}, name);
        count += name == "Thread (pooled)" ? 1 : 0;
    }
    return count;
}

TEST(FirstFrameTest, IsPaintedWithoutTheHelpOfThreads) {
    const int before = threadsOfThePool();
    Program program;
    program.start();
    QApplication::processEvents();
    for (const double ratio : {1.0, 2.0}) {
        QImage image{(QSizeF{program.window().size()} * ratio).toSize(), QImage::Format_RGB32};
        image.setDevicePixelRatio(ratio);
        program.window().render(&image);
        EXPECT_EQ(threadsOfThePool(), before) << "at scale " << ratio;
    }
}

TEST(FirstFrameTest, TheMenuBarAsksForNoIcon) {
    Program program;
    program.start();
    const auto* bar = program.window().findChild<QMenuBar*>();
    ASSERT_NE(bar, nullptr);
    const auto* more = bar->findChild<QToolButton*>(QStringLiteral("qt_menubar_ext_button"));
    ASSERT_NE(more, nullptr);
    EXPECT_TRUE(more->icon().isNull());
    EXPECT_TRUE(more->isHidden());
}

TEST(FirstFrameTest, FontsGoByNamesThatAreInstalled) {
    Program program;
    EXPECT_TRUE(QFontDatabase::hasFamily(interfaceFont(13).family()));
    EXPECT_TRUE(QFontDatabase::hasFamily(monospacedFont(11).family()));
    EXPECT_TRUE(QFontDatabase::isFixedPitch(monospacedFont(11).family()));
}

TEST(FirstFrameTest, AnInstalledFontStandsForItselfAndAnotherForOneThatIsNot) {
    EXPECT_EQ(installedFamily("DejaVu Sans Mono"), "DejaVu Sans Mono");
    const auto stand = installedFamily("No Font Of This Name");
    EXPECT_TRUE(QFontDatabase::hasFamily(QString::fromStdString(stand))) << stand;
}

TEST(FirstFrameTest, ReadingAheadGivesTheSameFonts) {
    const auto sans = installedFamily("Sans Serif"), fixed = installedFamily("monospace");
    readFontsAhead();
    EXPECT_EQ(installedFamily("Sans Serif"), sans);
    EXPECT_EQ(installedFamily("monospace"), fixed);
    EXPECT_EQ(installedFamily("DejaVu Sans"), "DejaVu Sans");
}

} // namespace
} // namespace oxlade::test
