#include "i18n/string_table.h"
#include "i18n/window_texts.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <random>

namespace oxlade::test {

class WindowTextsTest : public ::testing::Test {
  protected:
    ~WindowTextsTest() override { CurrentLanguage = 0; }
    WindowTexts texts() const { return windowTexts(state); }
    WindowState state;
};

TEST_F(WindowTextsTest, ThePercentageShowsFromZeroOnWithoutABound) {
    for (const auto& [percent, text] :
         {std::pair{0, "0%"}, {42, "42%"}, {100, "100%"}, {1000, "1000%"}}) {
        state.operationPercent = percent;
        EXPECT_EQ(texts().percent, text);
    }
    for (const int percent : {-1, -2, INT32_MIN}) {
        state.operationPercent = percent;
        EXPECT_EQ(texts().percent, "");
    }
}

TEST_F(WindowTextsTest, EveryDeviceStateHasItsTextsAndItsDot) {
    struct Row {
        DeviceState state;
        const char *status, *detail;
        SemanticColor dot;
    };
    state.deviceGeometry = "Flash geometry: <b>8</b>";
    for (const auto& row : {
             Row{DeviceState::unknown, "device.unknown", "device.unknown.detail",
                 SemanticColor::tertiaryLabelColor},
             Row{DeviceState::checking, "device.checking", "device.checking.detail",
                 SemanticColor::systemOrangeColor},
             Row{DeviceState::failed, "device.failed", "device.failed.detail",
                 SemanticColor::systemRedColor},
         }) {
        state.deviceState = row.state;
        EXPECT_EQ(texts().deviceStatus, L(row.status));
        EXPECT_EQ(texts().deviceDetail, L(row.detail));
        EXPECT_EQ(texts().deviceDot, row.dot);
    }
    state.deviceState = DeviceState::ready;
    EXPECT_EQ(texts().deviceStatus, "MPC4000 connected");
    EXPECT_EQ(texts().deviceDetail, "Flash geometry: <b>8</b>");
    EXPECT_EQ(texts().deviceDot, SemanticColor::systemGreenColor);
}

TEST_F(WindowTextsTest, AReadyDeviceWithoutAGeometryHasAnEmptyDetail) {
    state.deviceState = DeviceState::ready;
    EXPECT_EQ(texts().deviceDetail, "");
}

TEST_F(WindowTextsTest, TheGeometryIsNeverTranslated) {
    state.deviceState = DeviceState::ready;
    state.deviceGeometry = "Flash geometry: 8";
    CurrentLanguage = 1;
    EXPECT_EQ(texts().deviceStatus, "MPC4000 подключен");
    EXPECT_EQ(texts().deviceDetail, "Flash geometry: 8");
}

TEST_F(WindowTextsTest, AnyOtherDeviceStateLeavesTheTextsAlone) {
    for (const std::int64_t odd : {std::int64_t{4}, std::int64_t{-1}, INT64_MIN, INT64_MAX}) {
        state.deviceState = static_cast<DeviceState>(odd);
        EXPECT_FALSE(texts().deviceStatus);
        EXPECT_FALSE(texts().deviceDetail);
        EXPECT_EQ(texts().deviceDot, SemanticColor::tertiaryLabelColor);
    }
}

TEST_F(WindowTextsTest, ASelectedImageShowsItsNameAndSize) {
    state.firmwarePath = "/home/a/os.bin";
    state.firmwareSize = 3'145'728;
    EXPECT_EQ(texts().firmware, "os.bin  \u00B7  3.0 MB");
    EXPECT_EQ(texts().firmwareToolTip, "/home/a/os.bin");
    EXPECT_EQ(texts().firmwareColor, SemanticColor::labelColor);
    CurrentLanguage = 1;
    EXPECT_EQ(texts().firmware, "os.bin  \u00B7  3.0 MB") << "a point in Russian too";
}

TEST_F(WindowTextsTest, WithoutAnImageTheLineSaysWhatCanBeDone) {
    state.hasBundledFirmware = true;
    EXPECT_EQ(texts().firmware, "No firmware selected");
    EXPECT_EQ(texts().firmwareToolTip, "No firmware selected");
    EXPECT_EQ(texts().firmwareColor, SemanticColor::secondaryLabelColor);
    state.hasBundledFirmware = false;
    EXPECT_EQ(texts().firmware, "No bundled firmware. Choose a .bin file.");
    EXPECT_EQ(texts().firmwareToolTip, "No bundled firmware. Choose a .bin file.");
}

TEST_F(WindowTextsTest, AnUnknownOperationShowsItsKey) {
    state.operationKey = "op.nonsense";
    EXPECT_EQ(texts().operation, "op.nonsense");
}

TEST_F(WindowTextsTest, SizesAreRoundedToOneDecimal) {
    EXPECT_EQ(megabytes(0), "0.0 MB");
    EXPECT_EQ(megabytes(56), "0.0 MB");
    EXPECT_EQ(megabytes(104'857), "0.1 MB");
    EXPECT_EQ(megabytes(1'572'864), "1.5 MB");
    EXPECT_EQ(megabytes(3'145'728), "3.0 MB");
    EXPECT_EQ(megabytes(1'048'575), "1.0 MB");
}

TEST_F(WindowTextsTest, SizesReadAsTheCLibraryPrintsThem) {
    const auto printed = [](std::uint64_t bytes) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.1f MB",
                      static_cast<double>(bytes) * 9.5367431640625e-07);
        return std::string{buffer};
    };
    std::mt19937_64 random{7}; // NOLINT: the same sizes in each run
    for (std::uint64_t quarter = 0; quarter < 100; ++quarter)
        ASSERT_EQ(megabytes(quarter << 18U), printed(quarter << 18U));
    for (int i = 0; i < 100'000; ++i) {
        const auto bytes = random() >> (11 + random() % 50);
        ASSERT_EQ(megabytes(bytes), printed(bytes)) << bytes;
    }
}

} // namespace oxlade::test
