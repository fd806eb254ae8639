#include "interfaces/path_names.h"

#include <gtest/gtest.h>

namespace oxlade::test {

TEST(PathNames, TheLastComponentIsTheFileName) {
    EXPECT_EQ(lastPathComponent("/a/b c.bin"), "b c.bin");
    EXPECT_EQ(lastPathComponent("b.bin"), "b.bin");
    EXPECT_EQ(lastPathComponent("/a/b/"), "b");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent("//"), "/");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(PathNames, JoiningGivesExactlyOneSlash) {
    EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/a/", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/", "b"), "/b");
    EXPECT_EQ(joinedPath("", "b"), "b") << "not the root";
}

} // namespace oxlade::test
