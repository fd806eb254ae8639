#include "simulator/flash_memory.h"
#include "tests/simulator/helper_run.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <system_error>

namespace oxlade::simulator {
namespace {

constexpr std::size_t sector = FlashMemory::sectorBytes;

class FlashMemoryTest : public testing::Test {
  protected:
    std::string held() const { return test::bytesOf(path); }
    std::string state() const { return test::bytesOf(path + ".state"); }
    static std::string blank(std::size_t bytes) { return std::string(bytes, '\xFF'); }

    test::TemporaryFolder folder;
    std::string path = folder.path("new/folder/flash.bin");
    std::string image = std::string(sector, 'a') + std::string(sector, 'b') + "tail";
};

TEST_F(FlashMemoryTest, IsMadeWithItsFoldersAndNotTouchedUntilItIsErased) {
    const FlashMemory memory(path);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(held(), "");
    EXPECT_EQ(state(), "");
}

TEST_F(FlashMemoryTest, ErasesThePercentageOfTheSectorsThatTheImageNeeds) {
    FlashMemory memory(path);
    memory.eraseTo(50, image.size());
    EXPECT_EQ(held(), blank(3 * sector / 2));
    EXPECT_EQ(state(), "erasing\n");
    memory.eraseTo(100, image.size());
    EXPECT_EQ(held(), blank(3 * sector));
}

TEST_F(FlashMemoryTest, ErasesAllThatABiggerImageLeft) {
    const std::string old(5 * sector, 'o');
    { const FlashMemory made(path); }
    test::writeFile(path, old);
    FlashMemory memory(path);
    memory.eraseTo(20, image.size());
    EXPECT_EQ(held(), blank(sector) + old.substr(sector));
    memory.eraseTo(100, image.size());
    EXPECT_EQ(held(), blank(5 * sector));
}

TEST_F(FlashMemoryTest, HoldsThePercentageOfTheImageThatWasWritten) {
    FlashMemory memory(path);
    memory.eraseTo(100, image.size());
    memory.writeTo(25, image);
    const std::size_t quarter = image.size() / 4;
    EXPECT_EQ(held(), image.substr(0, quarter) + blank(3 * sector - quarter));
    EXPECT_EQ(state(), "writing\n");
}

TEST_F(FlashMemoryTest, IsTheImageAndNothingElseOnceItIsVerified) {
    FlashMemory memory(path);
    memory.eraseTo(100, image.size());
    memory.writeTo(100, image);
    EXPECT_TRUE(memory.verify(image));
    EXPECT_EQ(held(), image);
    EXPECT_EQ(state(), "whole " + std::to_string(image.size()) + "\n");
}

TEST_F(FlashMemoryTest, IsNotWholeWhenOneByteDiffers) {
    FlashMemory memory(path);
    memory.eraseTo(100, image.size());
    memory.writeTo(100, image);
    std::string other = image;
    other.back() = 'x';
    EXPECT_FALSE(memory.verify(other));
    EXPECT_EQ(state(), "writing\n");
    EXPECT_EQ(held().size(), 3 * sector);
}

TEST_F(FlashMemoryTest, IsNotWholeWhileTheImageIsWrittenInPart) {
    FlashMemory memory(path);
    memory.eraseTo(100, image.size());
    memory.writeTo(99, image);
    EXPECT_FALSE(memory.verify(image));
}

TEST_F(FlashMemoryTest, TakesAnEmptyImage) {
    FlashMemory memory(path);
    memory.eraseTo(100, 0);
    memory.writeTo(100, "");
    EXPECT_TRUE(memory.verify(""));
    EXPECT_EQ(held(), "");
    EXPECT_EQ(state(), "whole 0\n");
}

TEST_F(FlashMemoryTest, ReachesTheEndInUnevenStepsToo) {
    FlashMemory memory(path);
    for (unsigned percent = 0; percent < 100; percent += 7) memory.eraseTo(percent, image.size());
    memory.eraseTo(100, image.size());
    for (unsigned percent = 0; percent < 100; percent += 3) memory.writeTo(percent, image);
    memory.writeTo(100, image);
    EXPECT_TRUE(memory.verify(image));
}

TEST_F(FlashMemoryTest, CannotBeAFolder) {
    EXPECT_THROW(FlashMemory{folder.path("")}, std::system_error);
}

} // namespace
} // namespace oxlade::simulator
