// The place, font and colour of every control.
#include "tests/ui/program.h"
#include "ui/palette.h"

#include <cmath>

namespace oxlade::test {
namespace {

const struct {
    const char* name;
    const char* parent;
    QRect frame; ///< from the parent's bottom left corner
} places[] = {
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

/// From the parent's bottom left corner.
QRect geometry(const QWidget& widget) {
    const QRect place = widget.geometry();
    return {QPoint{place.x(), widget.parentWidget()->height() - 1 - place.bottom()}, place.size()};
}

class LayoutTest : public ProgramTest {
  protected:
    QWidget* find(const char* name) { return widgets().find(name); }
};

TEST_F(LayoutTest, EveryControlHasItsFrameInItsParent) {
    for (const auto& place : places) {
        const QWidget* widget = find(place.name);
        ASSERT_NE(widget, nullptr) << place.name;
        EXPECT_EQ(widget->parentWidget(), find(place.parent)) << place.name;
        EXPECT_EQ(geometry(*widget), place.frame) << place.name;
        EXPECT_TRUE(widget->isVisible()) << place.name;
    }
}

TEST_F(LayoutTest, LaterControlsStandOnEarlierOnes) {
    QStringList expected, actual;
    for (const auto& place : places)
        if (std::string_view{place.parent} == "content") expected << QLatin1String{place.name};
    expected << QStringLiteral("creditLabel") << QStringLiteral("websiteLink");
    for (const QObject* child : program.content().children())
        if (child->isWidgetType()) actual << child->objectName();
    EXPECT_EQ(actual.join(u' ').toStdString(), expected.join(u' ').toStdString());
}

using enum SemanticColor;
const struct {
    const char* name;
    int pixels;
    QFont::Weight weight;
    SemanticColor color;
    Truncation truncation = Truncation::tail;
} texts[] = {
    {"titleLabel", 26, QFont::Bold, labelColor},
    {"subtitleLabel", 13, QFont::Normal, secondaryLabelColor},
    {"deviceCaptionLabel", 10, QFont::DemiBold, secondaryLabelColor},
    {"deviceStatusLabel", 14, QFont::DemiBold, labelColor},
    {"deviceDetailLabel", 12, QFont::Normal, secondaryLabelColor, Truncation::twoLines},
    {"firmwareCaptionLabel", 10, QFont::DemiBold, secondaryLabelColor},
    {"firmwareLabel", 13, QFont::Medium, labelColor, Truncation::middle},
    {"operationLabel", 13, QFont::Medium, labelColor},
    {"percentLabel", 13, QFont::Normal, secondaryLabelColor},
    {"logCaptionLabel", 10, QFont::DemiBold, secondaryLabelColor},
    {"creditLabel", 11, QFont::Normal, secondaryLabelColor},
};

TEST_F(LayoutTest, EveryTextHasItsFontColourAndTruncation) {
    for (const auto& text : texts) {
        const auto* label = dynamic_cast<LabelView*>(find(text.name));
        ASSERT_NE(label, nullptr) << text.name;
        const bool isPercent = label == widgets().percentLabel;
        EXPECT_EQ(label->font().pixelSize(), text.pixels) << text.name;
        EXPECT_EQ(label->font().weight(), text.weight) << text.name;
        EXPECT_EQ(label->style().color, text.color) << text.name;
        EXPECT_EQ(label->style().truncation, text.truncation) << text.name;
        EXPECT_EQ(label->style().alignment & Qt::AlignHorizontal_Mask,
                  isPercent ? Qt::AlignRight : Qt::AlignLeft);
        EXPECT_EQ(label->style().tabularDigits, isPercent);
    }
    for (const QWidget* widget : {find("websiteLink"), find("logView")}) {
        EXPECT_EQ(widget->font().pixelSize(), 11);
        EXPECT_EQ(widget->font().weight(), QFont::Normal);
    }
    EXPECT_TRUE(QFontInfo{find("logView")->font()}.fixedPitch());
    const QtFileLabel& name = *widgets().firmwareLabel;
    EXPECT_EQ(name.baselineOfRow(0), name.fontMetrics().ascent()) << "near the titles beside it";
}

TEST_F(LayoutTest, TheBarClampsItsValueAndStartsEmpty) {
    QtProgressIndicator& bar = *widgets().progress;
    EXPECT_EQ(bar.doubleValue(), 0);
    const std::pair<double, double> rows[] = {
        {15.5, 15.5}, {101, 100}, {-1, 0}, {50, 50}, {std::nan(""), 0}};
    for (const auto& [value, shown] : rows) {
        bar.setDoubleValue(value);
        EXPECT_EQ(bar.doubleValue(), shown) << value;
    }
}

TEST_F(LayoutTest, TheLogHasNoHorizontalScrollerNoFrameAndIsReadOnly) {
    const QtLogView& log = *program.widgets().logView;
    EXPECT_EQ(log.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_NE(log.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(log.frameShape(), QFrame::NoFrame);
    EXPECT_TRUE(log.textInteractionFlags() & Qt::TextSelectableByMouse);
    EXPECT_TRUE(log.textInteractionFlags() & Qt::TextSelectableByKeyboard);
    EXPECT_FALSE(log.isUndoRedoEnabled());
    EXPECT_EQ(log.maximumBlockCount(), 0) << "the log has no limit";
}

TEST_F(LayoutTest, OnlyTheFirmwareLabelHasAToolTip) {
    for (const QWidget* widget : program.window().findChildren<QWidget*>())
        EXPECT_EQ(!widget->toolTip().isEmpty(), widget == program.widgets().firmwareLabel)
            << widget->objectName().toStdString();
}

TEST_F(LayoutTest, TheWindowIsOfFixedSizeAndCanBeMinimisedAndClosed) {
    const MainWindow& window = program.window();
    EXPECT_EQ(content().size(), QSize(760, 620));
    EXPECT_EQ(window.size(), QSize(760, 620 + program.menuBar().height()));
    EXPECT_EQ(window.minimumSize(), window.size());
    EXPECT_EQ(window.maximumSize(), window.size());
    EXPECT_FALSE(window.windowFlags() & Qt::WindowMaximizeButtonHint);
    EXPECT_TRUE(window.windowFlags() & Qt::WindowMinimizeButtonHint);
    EXPECT_TRUE(window.windowFlags() & Qt::WindowCloseButtonHint);
}

TEST(StartingPlace, IsCentredWithTheTitleBarOnTheScreen) {
    EXPECT_EQ(startingPlace({0, 0, 1000, 1000}, {600, 400}), QPoint(200, 300));
    EXPECT_EQ(startingPlace({50, 30, 1000, 1000}, {600, 400}), QPoint(250, 330));
    EXPECT_EQ(startingPlace({0, 0, 1024, 600}, {760, 642}), QPoint(132, 0));
    EXPECT_EQ(startingPlace({64, 27, 640, 453}, {760, 642}), QPoint(64, 27));
}

TEST(CreditLine, ShowsTheVersionIfThereIsOneAndIsCentred) {
    const std::string author = "by Verrin  \u00B7", long_(200, '8');
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"1.2.3", "oxlade.example", "v1.2.3  \u00B7  " + author},
        {"12.34.56", "oxlade.example", "v12.34.56  \u00B7  " + author},
        {"", "oxlade.example", author},
        {long_, "oxlade.example", "v" + long_ + "  \u00B7  " + author},
        {"1.0.0", std::string(200, 'w') + ".example", "v1.0.0  \u00B7  " + author},
    };
    for (const auto& [version, website, expected] : rows) {
        Program program{0, version, website};
        program.start();
        const QtLabel& label = *program.widgets().creditLabel;
        const QPushButton& link = *program.widgets().websiteLink;
        EXPECT_EQ(label.text().toStdString(), expected);
        EXPECT_EQ(label.displayedLines(), QStringList{label.text()}) << "elided";
        EXPECT_EQ(link.text().toStdString(), website);
        const int credit = label.sizeHint().width(), linkWidth = link.sizeHint().width();
        const int x = static_cast<int>(std::floor((760 - (credit + 4 + linkWidth)) * 0.5));
        EXPECT_EQ(geometry(label), QRect(x, 15, credit, 14));
        EXPECT_EQ(geometry(link), QRect(x + credit + 4, 15, linkWidth, 14));
    }
}

TEST_F(LayoutTest, TheBarIsRedAfterAFailedFlashUntilTheNextRun) {
    const QColor red = color(systemRedColor, program.window().palette());
    const auto isRed = [&] { return pictureOf(*widgets().progress).pixelColor(5, 10) == red; };
    widgets().progress->setDoubleValue(63);
    for (const auto* operation : {"op.checking", "op.error", "op.checking"}) {
        program.delegate->setOperation(operation, -1);
        EXPECT_EQ(isRed(), std::string_view{operation} == "op.error");
    }
}

TEST(LanguageControl, ShowsTheLanguageChosenAtStartWhichIsItsOnlyTabStop) {
    for (const int language : {0, 1}) {
        Program program{language};
        program.start();
        const QtSegmentedControl& control = *program.widgets().languageControl;
        const auto segment = [&](int i) { return control.childAt(25 + 50 * i, 12); };
        const auto tabStops = [&] {
            std::vector<int> found;
            for (const int i : {0, 1})
                if ((segment(i)->focusPolicy() & Qt::TabFocus) != 0) found.push_back(i);
            return found;
        };
        EXPECT_EQ(control.selectedSegment(), language);
        EXPECT_EQ(tabStops(), std::vector{language});
        // As a press that is released outside.
        segment(1 - language)->setFocus(Qt::MouseFocusReason);
        EXPECT_EQ(tabStops(), std::vector{language});
        QTest::mouseClick(segment(1 - language), Qt::LeftButton);
        EXPECT_EQ(tabStops(), std::vector{1 - language});
    }
}

} // namespace
} // namespace oxlade::test
