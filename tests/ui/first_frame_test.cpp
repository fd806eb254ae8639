// What the first frame need not wait for.
#include "tests/ui/program.h"
#include "ui/font_cache.h"
#include "ui/fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QImage>
#include <QMenuBar>
#include <QToolButton>

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <tuple>

namespace oxlade::test {
namespace {

/// By number: others may end meanwhile.
std::set<std::string> threadsOfThePool() {
    std::set<std::string> threads;
    for (const auto& thread : std::filesystem::directory_iterator{"/proc/self/task"}) {
        std::string name;
        std::getline(std::ifstream{thread.path() / "comm"}, name);
        if (name == "Thread (pooled)") threads.insert(thread.path().filename());
    }
    return threads;
}

TEST(FirstFrameTest, IsPaintedWithoutTheHelpOfThreads) {
    const auto before = threadsOfThePool();
    Program program;
    program.start();
    QApplication::processEvents();
    for (const double ratio : {1.0, 2.0}) {
        QImage image{(QSizeF{program.window().size()} * ratio).toSize(), QImage::Format_RGB32};
        image.setDevicePixelRatio(ratio);
        program.window().render(&image);
        for (const auto& thread : threadsOfThePool())
            EXPECT_TRUE(before.contains(thread)) << "at scale " << ratio;
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

TEST(FirstFrameTest, AnInstalledFontStandsForItselfAndOneOfItsKindForAMissingOne) {
    constexpr auto fixed = FontKind::monospaced, proportional = FontKind::proportional;
    EXPECT_EQ(installedFamily("DejaVu Sans Mono", fixed), "DejaVu Sans Mono");
    const auto standIn = [](FontKind kind) {
        return QString::fromStdString(installedFamily("No Font Of This Name", kind));
    };
    for (const FontKind kind : {fixed, proportional})
        EXPECT_TRUE(QFontDatabase::hasFamily(standIn(kind))) << standIn(kind).toStdString();
    EXPECT_TRUE(QFontDatabase::isFixedPitch(standIn(fixed)));
    EXPECT_FALSE(QFontDatabase::isFixedPitch(standIn(proportional)));
}

TEST(FirstFrameTest, ReadingAheadGivesTheSameFonts) {
    const auto all = [] {
        return std::tuple{installedFamily("Sans Serif", FontKind::proportional),
                          installedFamily("monospace", FontKind::monospaced),
                          installedFamily("DejaVu Sans", FontKind::proportional)};
    };
    const auto before = all();
    readFontsAhead();
    EXPECT_EQ(all(), before);
}

} // namespace
} // namespace oxlade::test
