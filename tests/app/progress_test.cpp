// The effect of each report on the state and the window.
#include "tests/testing/fixture.h"

namespace oxlade::test {

class Progress : public ControllerTest {
  protected:
    Progress() { start(); }

    /// The bar, the operation and the percentage after `text`.
    std::string after(std::string_view text) {
        delegate->parseProgressFromText(text);
        return number(controls.progress.value) + ' ' + delegate->operationKey() + ' ' +
               *controls.percentLabel.text;
    }
};

TEST_F(Progress, EraseFillsTheFirstHalfOfTheBarAndWriteTheSecond) {
    EXPECT_EQ(after("Erase 0%"), "0 op.erase 0%");
    EXPECT_EQ(after("Erase 31%"), "15.5 op.erase 31%");
    EXPECT_EQ(after("Erase 99%"), "49.5 op.erase 99%");
    EXPECT_EQ(after("Erase 100%"), "50 op.erase 100%");
    EXPECT_EQ(after("Write 0%"), "50 op.write 0%");
    EXPECT_EQ(after(" \t Write 12% \u00A0"), "56 op.write 12%");
    EXPECT_EQ(after("Write 100%"), "100 op.write 100%");
    EXPECT_EQ(after("All right: OS upload complete."), "100 op.done ");
}

TEST_F(Progress, NumbersOverAHundredCountAsAHundred) {
    EXPECT_EQ(after("Erase 101%"), "50 op.erase 100%");
    EXPECT_EQ(after("Write 250%"), "100 op.write 100%");
    EXPECT_EQ(after("Erase -1%"), "50 op.erase 100%");
    EXPECT_EQ(after("Write 99999999999999999999999%"), "100 op.write 100%");
}

TEST_F(Progress, TheGeometryIsStoredWithoutARefresh) {
    delegate->parseProgressFromText("  Flash geometry: 8 sectors \n");
    EXPECT_EQ(delegate->deviceGeometry(), "Flash geometry: 8 sectors");
    EXPECT_EQ(trace.take(), "");
}

TEST_F(Progress, EachReportOfAChunkIsAppliedWithARefreshOfItsOwn) {
    delegate->parseProgressFromText("Erase 1%\nErase 1%\nother\n\nWrite 10%");
    EXPECT_EQ(trace.take(), R"(progress 0.5
refreshTexts
  operationLabel "Erasing flash"
  percentLabel "1%"
progress 0.5
refreshTexts
progress 55
refreshTexts
  operationLabel "Writing OS"
  percentLabel "10%"
)");
}

TEST_F(Progress, ReportsCountInADeviceCheckToo) {
    delegate->checkDevice();
    print("Write 10%\nOS upload complete\n");
    EXPECT_EQ(delegate->operationKey(), "op.done");
    exit(0);
    EXPECT_EQ(controls.progress.value, 100) << "a check leaves the bar as it is";
}

} // namespace oxlade::test
