// What each report does to the window.
#include "tests/testing/fixture.h"

namespace oxlade::test {

class Progress : public ControllerTest {
  protected:
    Progress() { start(); }

    struct Shown {
        double bar;
        std::string operation;
        std::string percent;
        friend bool operator==(const Shown&, const Shown&) = default;
        friend void PrintTo(const Shown& s, std::ostream* out) {
            *out << s.bar << ' ' << s.operation << ' ' << s.percent;
        }
    };
    Shown after(std::string_view text) {
        delegate->parseProgressFromText(text);
        return {controls.progress.value, delegate->operationKey(), *controls.percentLabel.text};
    }
};

TEST_F(Progress, EraseFillsTheFirstHalf) {
    EXPECT_EQ(after("Erase 0%"), (Shown{0, "op.erase", "0%"}));
    EXPECT_EQ(controls.operationLabel.text, "Erasing flash");
    EXPECT_EQ(after("Erase 31%"), (Shown{15.5, "op.erase", "31%"}));
    EXPECT_EQ(after("Erase 100%"), (Shown{50, "op.erase", "100%"}));
}

TEST_F(Progress, WriteFillsTheSecondHalf) {
    EXPECT_EQ(after("Write 0%"), (Shown{50, "op.write", "0%"}));
    EXPECT_EQ(after("Write 100%"), (Shown{100, "op.write", "100%"}));
}

TEST_F(Progress, NumbersOverAHundredCountAsAHundred) {
    EXPECT_EQ(after("Erase 150%"), (Shown{50, "op.erase", "100%"}));
    EXPECT_EQ(after("Write 250%"), (Shown{100, "op.write", "100%"}));
    EXPECT_EQ(after("Erase -1%"), (Shown{50, "op.erase", "100%"}));
    EXPECT_EQ(after("Write 99999999999999999999999%"), (Shown{100, "op.write", "100%"}));
}

TEST_F(Progress, BlanksAroundAReportDoNotMatter) {
    EXPECT_EQ(after(" \t Write 12% \u00A0"), (Shown{56, "op.write", "12%"}));
}

TEST_F(Progress, TwoReportsInOneChunkAreAppliedInTurn) {
    EXPECT_EQ(after("Erase 90%\nWrite 10%\n"), (Shown{55, "op.write", "10%"}));
}

TEST_F(Progress, TheGeometryIsStoredWholeAndShownOnlyAtTheNextRefresh) {
    trace.take();
    delegate->parseProgressFromText("  Flash geometry: 8 sectors \n");
    EXPECT_EQ(delegate->deviceGeometry(), "Flash geometry: 8 sectors");
    EXPECT_EQ(trace.take(), "");
}

TEST_F(Progress, AnEraseReportThatNamesTheGeometryIsOnlyAnEraseReport) {
    EXPECT_EQ(after("Erase 5% Flash geometry: no").operation, "op.erase");
    EXPECT_EQ(delegate->deviceGeometry(), "");
}

TEST_F(Progress, TheCompletionLineFillsTheBarWithoutAPercentage) {
    EXPECT_EQ(after("All right: OS upload complete."), (Shown{100, "op.done", ""}));
}

TEST_F(Progress, OtherLinesChangeNothing) {
    trace.take();
    delegate->parseProgressFromText("erase 10%\nErasing 10%\n\nVerify 3%\nflash geometry: x\n");
    EXPECT_EQ(trace.take(), "");
}

TEST_F(Progress, EachReportRefreshesOnce) {
    trace.take();
    delegate->parseProgressFromText("Erase 1%\nErase 1%\nErase 1%\n");
    EXPECT_EQ(trace.take(), R"(progress 0.5
refreshTexts
  operationLabel "Erasing flash"
  percentLabel "1%"
progress 0.5
refreshTexts
progress 0.5
refreshTexts
)");
}

TEST_F(Progress, ReportsCountInADeviceCheckToo) {
    delegate->checkDevice();
    print("Write 10%\nOS upload complete\n");
    EXPECT_EQ(delegate->operationKey(), "op.done");
    exit(0);
    EXPECT_EQ(delegate->operationKey(), "op.deviceReady");
    EXPECT_EQ(controls.progress.value, 100) << "a check leaves the bar where it is";
}

} // namespace oxlade::test
