#include "tests/testing/fixture.h"

namespace oxlade::test {

class BundlePaths : public ControllerTest {};

TEST_F(BundlePaths, TheBundlesHelperWinsWhateverTheWorkingDirectoryHolds) {
    files.files["/home/user/oxlade"].executable = true;
    EXPECT_EQ(delegate->loaderPath(), bundledHelper);
}

TEST_F(BundlePaths, AHelperWithoutExecutePermissionDoesNotCount) {
    files.files[bundledHelper].executable = false;
    EXPECT_EQ(delegate->loaderPath(), "/home/user/oxlade");
}

TEST_F(BundlePaths, TheWorkingDirectorysHelperIsNamedWithoutATest) {
    files.files.erase(bundledHelper);
    EXPECT_EQ(delegate->loaderPath(), "/home/user/oxlade");
    files.workingDirectory = "/";
    EXPECT_EQ(delegate->loaderPath(), "/oxlade");
    files.workingDirectory = ""; // it was deleted
    EXPECT_EQ(delegate->loaderPath(), "oxlade");
}

TEST_F(BundlePaths, NothingIsRemembered) {
    EXPECT_EQ(delegate->loaderPath(), bundledHelper);
    files.files.erase(bundledHelper);
    EXPECT_EQ(delegate->loaderPath(), "/home/user/oxlade");
    EXPECT_EQ(delegate->bundledFirmwarePath(), bundledImage);
    files.files.erase(bundledImage);
    EXPECT_EQ(delegate->bundledFirmwarePath(), "");
}

} // namespace oxlade::test
