#include "firmware/image_test.h"

#include <gtest/gtest.h>
#include <string>

namespace oxlade::test {

namespace {
std::string bytesWith(std::string_view signature, std::size_t offset, std::size_t size) {
    std::string bytes(size, '\xAA');
    return bytes.replace(offset, signature.size(), signature);
}
} // namespace

TEST(ImageTest, AFileOf56BytesThatEndsInTheSignaturePasses) {
    EXPECT_EQ(testImage(bytesWith(imageSignature, 32, 56)), ImageVerdict::acceptable);
    EXPECT_EQ(testImage(bytesWith(imageSignature, 32, 4096)), ImageVerdict::acceptable);
}

TEST(ImageTest, AnythingShorterIsTooSmallWhateverItHolds) {
    for (std::size_t size = 0; size < 56; ++size)
        EXPECT_EQ(testImage(bytesWith(imageSignature, 32, 100).substr(0, size)),
                  ImageVerdict::tooSmall);
}

TEST(ImageTest, TheSignatureElsewhereDoesNotCount) {
    for (const std::size_t offset : {0U, 31U, 33U, 64U})
        EXPECT_EQ(testImage(bytesWith(imageSignature, offset, 200)), ImageVerdict::noSignature);
}

TEST(ImageTest, EveryByteOfTheSignatureCounts) {
    for (std::size_t i = 0; i < imageSignature.size(); ++i) {
        auto bytes = bytesWith(imageSignature, 32, 56);
        bytes[32 + i] = static_cast<char>(bytes[32 + i] ^ 0x20);
        EXPECT_EQ(testImage(bytes), ImageVerdict::noSignature) << i;
    }
    EXPECT_EQ(testImage(bytesWith("MPC4000 OPERATING SYSTEM", 32, 56)), ImageVerdict::noSignature);
}

TEST(ImageTest, TheBytesAroundTheSignatureDoNotCount) {
    for (const char fill : {'\0', '\xFF', 'M'}) {
        std::string bytes(32, fill);
        bytes += imageSignature;
        bytes += std::string(10, fill);
        EXPECT_EQ(testImage(bytes), ImageVerdict::acceptable);
    }
}

} // namespace oxlade::test
