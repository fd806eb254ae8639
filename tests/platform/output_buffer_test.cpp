#include "platform/output_buffer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade::test {

namespace {

SharedBytes passOn(OutputBuffer& buffer, std::string_view bytes, std::size_t room) {
    std::copy(bytes.begin(), bytes.end(), buffer.room(room));
    return buffer.take(bytes.size());
}

} // namespace

TEST(OutputBuffer, WhatWasTakenStaysAsItIsAlsoWithoutTheBuffer) {
    std::vector<SharedBytes> taken;
    std::vector<std::string> expected;
    {
        OutputBuffer buffer;
        for (std::size_t i = 0; i < 300; ++i) {
            // Rooms of any size, more than a block of either size has among them.
            const std::size_t room = i % 100 == 99 ? 3'000'000 : 1 + i * 997;
            expected.emplace_back(i % 3 == 0 ? room : room / 2, static_cast<char>('a' + i % 26));
            taken.push_back(passOn(buffer, expected.back(), room));
        }
    }
    for (std::size_t i = 0; i < taken.size(); ++i) EXPECT_TRUE(taken[i].view == expected[i]) << i;
}

TEST(OutputBuffer, RoomThatWasNotTakenIsGivenAgain) {
    OutputBuffer buffer;
    char* const room = buffer.room(1000);
    EXPECT_EQ(buffer.take(0).view, "");
    EXPECT_EQ(buffer.room(1000), room);
    buffer.take(10);
    EXPECT_EQ(buffer.room(1000), room + 10);
}

TEST(OutputBuffer, ABlockIsFreedWithTheLastOfItsBytes) {
    OutputBuffer buffer;
    auto first = passOn(buffer, "first", 10);
    auto second = passOn(buffer, "second", 10);
    const std::weak_ptr block{first.owner};
    passOn(buffer, "", 1'000'000); // the buffer goes on with another block
    first = {};
    EXPECT_FALSE(block.expired());
    second = {};
    EXPECT_TRUE(block.expired());
}

} // namespace oxlade::test
