// What the first frame must not wait for.
#include "tests/ui/program.h"
#include "ui/text.h"

#include <QFontDatabase>
#include <QToolButton>

#include <filesystem>
#include <fstream>
#include <set>
#include <tuple>

namespace oxlade::test {
namespace {

/// The ids of the threads of Qt's pool.
std::set<std::string> pooledThreads() {
    std::set<std::string> threads;
    for (const auto& thread : std::filesystem::directory_iterator{"/proc/self/task"}) {
        std::string name;
        std::getline(std::ifstream{thread.path() / "comm"}, name);
        if (name == "Thread (pooled)") threads.insert(thread.path().filename());
    }
    return threads;
}

TEST(FirstFrameTest, StartsNoThreads) {
    const auto before = pooledThreads();
    Program program;
    program.start();
    QApplication::processEvents();
    for (const double ratio : {1.0, 2.0}) {
        pictureOf(program.window(), ratio);
        for (const auto& thread : pooledThreads())
            EXPECT_TRUE(before.contains(thread)) << "at scale " << ratio;
    }
}

TEST(FirstFrameTest, TheMenuBarAsksForNoIcon) {
    Program program;
    program.start();
    const auto* more =
        program.menuBar().findChild<QToolButton*>(QStringLiteral("qt_menubar_ext_button"));
    ASSERT_NE(more, nullptr);
    EXPECT_TRUE(more->icon().isNull());
    EXPECT_TRUE(more->isHidden());
}

TEST(FirstFrameTest, AMissingFontIsReplacedByAnInstalledOneOfItsKind) {
    EXPECT_EQ(installedFamily("DejaVu Sans Mono", FontKind::monospaced), "DejaVu Sans Mono");
    Program program;
    for (const FontKind kind : {FontKind::monospaced, FontKind::proportional}) {
        const bool isFixed = kind == FontKind::monospaced;
        const auto standIn = QString::fromStdString(installedFamily("No Font Of This Name", kind));
        EXPECT_TRUE(QFontDatabase::hasFamily(standIn)) << standIn.toStdString();
        EXPECT_EQ(QFontDatabase::isFixedPitch(standIn), isFixed) << standIn.toStdString();
        const QString used = (isFixed ? monospacedFont(11) : interfaceFont(13)).family();
        EXPECT_EQ(QFontDatabase::isFixedPitch(used), isFixed) << used.toStdString();
    }
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
