#include "simulator/image.h"
#include "tests/simulator/helper_run.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace oxlade::simulator {
namespace {

TEST(GeneratedImage, PassesForAnImageOfThreeMebibytes) {
    const std::string image = generateImage();
    EXPECT_EQ(image.size(), 3145728U);
    EXPECT_EQ(image.substr(32, 24), "MPC4000 Operating System");
}

TEST(GeneratedImage, SaysWhatItIsRightAfterTheSignatureAndInEachBlock) {
    const std::string image = generateImage();
    EXPECT_EQ(image.compare(56, warning.size(), warning), 0);
    for (std::size_t at = 65536; at < image.size(); at += 65536)
        EXPECT_EQ(image.compare(at, warning.size(), warning), 0) << at;
    EXPECT_NE(warning.find("Oxlade simulator only"), warning.npos);
    EXPECT_NE(warning.find("never be written to a real sampler"), warning.npos);
}

TEST(GeneratedImage, HasNoTwoEqualSectors) {
    const std::string image = generateImage();
    std::set<std::string> tails;
    for (std::size_t at = 0; at < image.size(); at += 65536)
        tails.insert(image.substr(at + 1024, 1024));
    EXPECT_EQ(tails.size(), image.size() / 65536);
}

TEST(MakeImage, WritesTheSameBytesEachTime) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path("an image.bin");
    const std::string command = std::string(OXLADE_MAKE_IMAGE) + " '" + path + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(test::bytesOf(path), generateImage());
}

TEST(MakeImage, FailsWhereItCannotWrite) {
    const std::string command = std::string(OXLADE_MAKE_IMAGE) + " /nowhere/at/all 2>/dev/null";
    EXPECT_NE(std::system(command.c_str()), 0);
}

} // namespace
} // namespace oxlade::simulator
