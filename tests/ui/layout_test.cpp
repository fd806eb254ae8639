// Where everything stands in the window, and how it is made.
#include "tests/ui/program.h"
#include "ui/layout.h"

#include <QApplication>
#include <QScreen>

#include <cmath>
#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

TEST(Layout, CountsFromTheBottomLeftCorner) {
    EXPECT_EQ(fromBottomLeft({0, 0, 10, 20}, 100), QRect(0, 80, 10, 20));
    EXPECT_EQ(fromBottomLeft({0, 80, 10, 20}, 100), QRect(0, 0, 10, 20));
    EXPECT_EQ(fromBottomLeft({90, 0, 10, 20}, 100), QRect(90, 80, 10, 20));
    EXPECT_EQ(fromBottomLeft({90, 80, 10, 20}, 100), QRect(90, 0, 10, 20));
    EXPECT_EQ(fromBottomLeft({-5, -7, 10, 20}, 100), QRect(-5, 87, 10, 20));
}

struct Place {
    const char* name;
    const char* parent;
    QRect frame; ///< from the parent's bottom left corner
};

const Place places[] = {
    {"titleLabel", "content", {26, 552, 420, 32}},
    {"subtitleLabel", "content", {27, 530, 520, 18}},
    {"languageControl", "content", {636, 554, 100, 24}},
    {"girlView", "content", {24, 332, 260, 184}},
    {"deviceCard", "content", {300, 416, 436, 100}},
    {"deviceCaptionLabel", "deviceCard", {16, 76, 280, 14}},
    {"deviceStatusDot", "deviceCard", {17, 55, 10, 10}},
    {"deviceStatusLabel", "deviceCard", {34, 50, 270, 20}},
    {"deviceDetailLabel", "deviceCard", {16, 12, 290, 32}},
    {"checkButton", "deviceCard", {320, 34, 104, 32}},
    {"firmwareCard", "content", {300, 332, 436, 72}},
    {"firmwareCaptionLabel", "firmwareCard", {16, 48, 190, 14}},
    {"firmwareLabel", "firmwareCard", {16, 18, 190, 20}},
    {"builtinButton", "firmwareCard", {212, 20, 104, 32}},
    {"chooseButton", "firmwareCard", {320, 20, 104, 32}},
    {"progressCard", "content", {24, 232, 712, 84}},
    {"operationLabel", "progressCard", {16, 52, 440, 18}},
    {"percentLabel", "progressCard", {456, 52, 80, 18}},
    {"progress", "progressCard", {16, 22, 520, 20}},
    {"installButton", "progressCard", {552, 22, 148, 40}},
    {"logCaptionLabel", "content", {28, 206, 300, 14}},
    {"logScrollView", "content", {24, 44, 712, 156}},
    {"logView", "logScrollView", {0, 0, 712, 156}},
};

class LayoutTest : public ::testing::Test {
  protected:
    LayoutTest() {
        program.start();
        QApplication::processEvents();
    }
    QWidget* find(const char* name) {
        return program.window().findChild<QWidget*>(QLatin1String{name});
    }
    Program program;
};

TEST_F(LayoutTest, EveryControlHasItsFrameInItsParent) {
    for (const Place& place : places) {
        const QWidget* widget = find(place.name);
        ASSERT_NE(widget, nullptr) << place.name;
        EXPECT_EQ(widget->parentWidget(), find(place.parent)) << place.name;
        const QRect expected = fromBottomLeft(place.frame, widget->parentWidget()->height());
        EXPECT_EQ(widget->geometry(), expected) << place.name;
        EXPECT_TRUE(widget->isVisible()) << place.name;
    }
}

TEST_F(LayoutTest, LaterControlsStandOnEarlierOnes) {
    QStringList expected, actual;
    for (const Place& place : places)
        if (std::string_view{place.parent} == "content") expected << QLatin1String{place.name};
    expected << QStringLiteral("creditLabel") << QStringLiteral("websiteLink");
    for (const QObject* child : program.content().children())
        if (child->isWidgetType()) actual << child->objectName();
    EXPECT_EQ(actual.join(u' ').toStdString(), expected.join(u' ').toStdString());
}

struct Text {
    const char* name;
    int pixels;
    QFont::Weight weight;
    SemanticColor color;
    Truncation truncation;
    Qt::Alignment alignment;
};

using enum SemanticColor;
const Text texts[] = {
    {"titleLabel", 26, QFont::Bold, labelColor, Truncation::tail, Qt::AlignLeft},
    {"subtitleLabel", 13, QFont::Normal, secondaryLabelColor, Truncation::tail, Qt::AlignLeft},
    {"deviceCaptionLabel", 10, QFont::DemiBold, secondaryLabelColor, Truncation::tail,
     Qt::AlignLeft},
    {"deviceStatusLabel", 14, QFont::DemiBold, labelColor, Truncation::tail, Qt::AlignLeft},
    {"deviceDetailLabel", 12, QFont::Normal, secondaryLabelColor, Truncation::twoLines,
     Qt::AlignLeft},
    {"firmwareCaptionLabel", 10, QFont::DemiBold, secondaryLabelColor, Truncation::tail,
     Qt::AlignLeft},
    {"firmwareLabel", 13, QFont::Medium, labelColor, Truncation::middle, Qt::AlignLeft},
    {"operationLabel", 13, QFont::Medium, labelColor, Truncation::tail, Qt::AlignLeft},
    {"percentLabel", 13, QFont::Normal, secondaryLabelColor, Truncation::tail, Qt::AlignRight},
    {"logCaptionLabel", 10, QFont::DemiBold, secondaryLabelColor, Truncation::tail, Qt::AlignLeft},
    {"creditLabel", 11, QFont::Normal, secondaryLabelColor, Truncation::tail, Qt::AlignLeft},
};

TEST_F(LayoutTest, EveryLabelHasItsFontColourAndTruncation) {
    for (const Text& text : texts) {
        const auto* field = dynamic_cast<TextField*>(find(text.name));
        ASSERT_NE(field, nullptr) << text.name;
        EXPECT_EQ(field->font().pixelSize(), text.pixels) << text.name;
        EXPECT_EQ(field->font().weight(), text.weight) << text.name;
        EXPECT_EQ(field->style().color, text.color) << text.name;
        EXPECT_EQ(field->style().truncation, text.truncation) << text.name;
        EXPECT_EQ(field->style().alignment, text.alignment) << text.name;
    }
}

TEST_F(LayoutTest, OnlyThePercentageHasDigitsOfOneWidth) {
    for (const Text& text : texts) {
        const auto* field = dynamic_cast<TextField*>(find(text.name));
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->style().monospacedDigits, field == program.content().percentLabel);
    }
}

TEST_F(LayoutTest, TheLinkHasElevenPixelsAndTheLogAMonospacedElevenToo) {
    EXPECT_EQ(program.content().websiteLink->font().weight(), QFont::Normal);
    EXPECT_EQ(program.content().logView->font().weight(), QFont::Normal);
    EXPECT_EQ(program.content().websiteLink->font().pixelSize(), 11);
    EXPECT_EQ(program.content().logView->font().pixelSize(), 11);
    EXPECT_TRUE(QFontInfo{program.content().logView->font()}.fixedPitch());
}

TEST_F(LayoutTest, TheBarGoesFromNothingToAHundredAndStartsEmpty) {
    ProgressBar& bar = *program.content().progress;
    EXPECT_EQ(ProgressBar::minimum, 0);
    EXPECT_EQ(ProgressBar::maximum, 100);
    EXPECT_EQ(bar.doubleValue(), 0);
    bar.setDoubleValue(15.5);
    EXPECT_EQ(bar.doubleValue(), 15.5);
    bar.setDoubleValue(101);
    EXPECT_EQ(bar.doubleValue(), 100);
    bar.setDoubleValue(-1);
    EXPECT_EQ(bar.doubleValue(), 0);
}

TEST_F(LayoutTest, TheLogHasNoHorizontalScrollerNoFrameAndIsReadOnly) {
    const LogTextView& log = *program.content().logView;
    EXPECT_EQ(log.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_NE(log.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(log.frameShape(), QFrame::NoFrame);
    EXPECT_TRUE(log.isReadOnly());
    EXPECT_TRUE(log.textInteractionFlags() & Qt::TextSelectableByMouse);
    EXPECT_TRUE(log.textInteractionFlags() & Qt::TextSelectableByKeyboard);
    EXPECT_FALSE(log.isUndoRedoEnabled());
    EXPECT_EQ(log.maximumBlockCount(), 0) << "the log has no limit";
    QTextCursor start{log.document()};
    const QPoint text = log.viewport()->mapTo(&log, log.cursorRect(start).topLeft());
    EXPECT_EQ(text.x(), 10);
    EXPECT_GE(text.y(), 8);
    EXPECT_LE(text.y(), 12);
}

TEST_F(LayoutTest, OnlyTheFirmwareLabelHasAToolTip) {
    for (const QWidget* widget : program.window().findChildren<QWidget*>())
        EXPECT_EQ(!widget->toolTip().isEmpty(), widget == program.content().firmwareLabel)
            << widget->objectName().toStdString();
}

TEST_F(LayoutTest, TheContentIs760By620WhateverTheMenuTakes) {
    EXPECT_EQ(program.content().size(), QSize(760, 620));
    EXPECT_EQ(program.window().width(), 760);
    EXPECT_EQ(program.window().height(), 620 + program.window().menu().bar()->height());
}

TEST_F(LayoutTest, TheWindowCannotBeResizedOrMaximisedButMinimisedAndClosed) {
    const MainWindow& window = program.window();
    EXPECT_EQ(window.minimumSize(), window.size());
    EXPECT_EQ(window.maximumSize(), window.size());
    EXPECT_FALSE(window.windowFlags() & Qt::WindowMaximizeButtonHint);
    EXPECT_TRUE(window.windowFlags() & Qt::WindowMinimizeButtonHint);
    EXPECT_TRUE(window.windowFlags() & Qt::WindowCloseButtonHint);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Oxlade"));
}

TEST_F(LayoutTest, TheWindowStartsCentred) {
    const QRect available = program.window().screen()->availableGeometry();
    const QSize size = program.window().size();
    const QPoint centre = program.window().pos() + QPoint{size.width() / 2, size.height() / 2};
    const QPoint off = centre - available.center();
    EXPECT_LE(std::abs(off.x()), 1);
    EXPECT_LE(std::abs(off.y()), 1);
}

TEST(StartingPlace, IsTheMiddleOfTheScreen) {
    EXPECT_EQ(startingPlace({0, 0, 1000, 1000}, {600, 400}), QPoint(200, 300));
    EXPECT_EQ(startingPlace({50, 30, 1000, 1000}, {600, 400}), QPoint(250, 330));
}

TEST(StartingPlace, HasItsTitleBarOnAScreenThatIsTooSmall) {
    EXPECT_EQ(startingPlace({0, 0, 1024, 600}, {760, 642}), QPoint(132, 0));
    EXPECT_EQ(startingPlace({64, 27, 640, 453}, {760, 642}), QPoint(64, 27));
}

TEST_F(LayoutTest, TheWindowIsBuiltHidden) {
    Program other;
    const Controls controls = other.interface->buildWindow({});
    EXPECT_FALSE(other.window().isVisible());
    EXPECT_EQ(&controls.window, static_cast<Window*>(&other.window()));
    EXPECT_TRUE(other.content().subtitleLabel->text().isEmpty());
    EXPECT_TRUE(other.content().checkButton->text().isEmpty());
    EXPECT_TRUE(other.content().logView->string().isEmpty());
}

void expectCreditLine(const std::string& version, const QString& expected,
                      const std::string& website = "oxlade.example") {
    Program program{0, version, website};
    program.start();
    const WindowContent& content = program.content();
    EXPECT_EQ(content.creditLabel->text().toStdString(), expected.toStdString());
    EXPECT_EQ(content.creditLabel->displayedLines(), QStringList{expected});
    EXPECT_EQ(content.websiteLink->text().toStdString(), website);
    const int credit = content.creditLabel->sizeHint().width();
    const int link = content.websiteLink->sizeHint().width();
    const int x = int(std::floor((760 - (credit + 4 + link)) * 0.5));
    EXPECT_EQ(content.creditLabel->geometry(), fromBottomLeft({x, 15, credit, 14}, 620));
    EXPECT_EQ(content.websiteLink->geometry(), fromBottomLeft({x + credit + 4, 15, link, 14}, 620));
}

TEST(CreditLine, NamesVersionAndAuthorAndIsCentred) {
    expectCreditLine("1.2.3", QStringLiteral("v1.2.3  \u00B7  by Verrin  \u00B7"));
}

TEST(CreditLine, LeavesOutAVersionThatIsNotKnown) {
    expectCreditLine("", QStringLiteral("by Verrin  \u00B7"));
}

TEST(CreditLine, MayBeWiderThanTheWindow) {
    const std::string version(200, '8');
    expectCreditLine(
        version,
        QStringLiteral("v%1  \u00B7  by Verrin  \u00B7").arg(QString::fromStdString(version)));
    Program program{0, version};
    program.start();
    EXPECT_LT(program.content().creditLabel->x(), 0);
    expectCreditLine("1.0.0", QStringLiteral("v1.0.0  \u00B7  by Verrin  \u00B7"),
                     std::string(200, 'w') + ".example");
}

TEST(CreditLine, IsShownWholeWhateverTheVersion) {
    for (const char* version : {"1.0.1", "1.1.0", "1.2.0", "1.4.0", "1.7.11", "12.34.56"})
        expectCreditLine(
            version,
            QStringLiteral("v%1  \u00B7  by Verrin  \u00B7").arg(QString::fromLatin1(version)));
}

TEST(LanguageControl, ShowsTheLanguageChosenAtStart) {
    for (const std::int64_t language : {0, 1}) {
        Program program{language};
        program.start();
        EXPECT_EQ(program.content().languageControl->selectedSegment(), language);
    }
}

} // namespace
} // namespace oxlade::test
