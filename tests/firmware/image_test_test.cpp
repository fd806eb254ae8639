#include "firmware/firmware.h"
#include "interfaces/path_names.h"

#include <gtest/gtest.h>
#include <string>

namespace oxlade::test {

namespace {

std::string bytesWith(std::string_view signature, std::size_t offset, std::size_t size,
                      char fill = '\xAA') {
    return std::string(size, fill).replace(offset, signature.size(), signature);
}

} // namespace

TEST(ImageTest, TheSignatureAtByte32IsAllThatCounts) {
    for (const std::size_t size : {56U, 57U, 4096U})
        for (const char fill : {'\0', '\xFF', 'M'})
            EXPECT_EQ(testImage(bytesWith("MPC4000 Operating System", 32, size, fill)),
                      ImageVerdict::acceptable);
    for (const std::size_t offset : {0U, 31U, 33U, 64U})
        EXPECT_EQ(testImage(bytesWith(imageSignature, offset, 200)), ImageVerdict::noSignature);
}

TEST(ImageTest, AFileUnder56BytesIsTooSmallWhateverItContains) {
    for (std::size_t size = 0; size < 56; ++size)
        EXPECT_EQ(testImage(bytesWith(imageSignature, 32, 100).substr(0, size)),
                  ImageVerdict::tooSmall);
}

TEST(ImageTest, EveryByteOfTheSignatureCounts) {
    for (std::size_t i = 0; i < imageSignature.size(); ++i) {
        auto bytes = bytesWith(imageSignature, 32, 56);
        bytes[32 + i] = static_cast<char>(bytes[32 + i] ^ 0x20);
        EXPECT_EQ(testImage(bytes), ImageVerdict::noSignature) << i;
    }
}

TEST(PathNames, TheLastComponentIsTheNameOfTheFile) {
    EXPECT_EQ(lastPathComponent("/a/b c.bin"), "b c.bin");
    EXPECT_EQ(lastPathComponent("b.bin"), "b.bin");
    EXPECT_EQ(lastPathComponent("/a/b//"), "b");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent("//"), "/");
    EXPECT_EQ(lastPathComponent("a"), "a");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(PathNames, JoiningGivesExactlyOneSlash) {
    EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/a/", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/", "b"), "/b");
    EXPECT_EQ(joinedPath("", "b"), "b");
}

} // namespace oxlade::test
