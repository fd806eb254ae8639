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
         {std::pair{0, "0%"}, {42, "42%"}, {1000, "1000%"}, {-1, ""}, {-2, ""}, {INT32_MIN, ""}}) {
        state.operationPercent = percent;
        EXPECT_EQ(texts().percent, text);
    }
}

TEST_F(WindowTextsTest, AnyOtherDeviceStateLeavesTheTexts) {
    for (const std::int64_t odd : {std::int64_t{4}, std::int64_t{-1}, INT64_MIN, INT64_MAX}) {
        state.deviceState = static_cast<DeviceState>(odd);
        EXPECT_FALSE(texts().deviceStatus);
        EXPECT_FALSE(texts().deviceDetail);
        EXPECT_EQ(texts().deviceDot, SemanticColor::tertiaryLabelColor);
    }
}

TEST_F(WindowTextsTest, TheMenusHaveTheirItemsAndShortcuts) {
    const MenuTree english{
        {"Oxlade", {{"Quit Oxlade", MenuAction::terminate, 'q'}}},
        {"Edit", {{"Copy", MenuAction::copy, 'c'}, {"Select All", MenuAction::selectAll, 'a'}}}};
    EXPECT_EQ(menuTree(), english);
    CurrentLanguage = 1;
    EXPECT_EQ(menuTree().at(1).items.at(1).title, "Выбрать все");
}

TEST_F(WindowTextsTest, SizesAreRoundedToOneDecimal) {
    EXPECT_EQ(megabytes(0), "0.0 MB");
    EXPECT_EQ(megabytes(104'857), "0.1 MB");
    EXPECT_EQ(megabytes(1'048'575), "1.0 MB");
    EXPECT_EQ(megabytes(1'572'864), "1.5 MB");
    EXPECT_EQ(megabytes(1U << 18U), "0.2 MB") << "a tie";
    EXPECT_EQ(megabytes(3U << 18U), "0.8 MB") << "a tie";
    EXPECT_EQ(megabytes(UINT64_MAX), "17592186044416.0 MB") << "rounded to a double before";
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
        const auto bytes = random() >> random() % 64;
        ASSERT_EQ(megabytes(bytes), printed(bytes)) << bytes;
    }
}

} // namespace oxlade::test
