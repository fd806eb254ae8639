// The build's own tool, run as the build runs it.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;

class EncodeSprites : public testing::Test {
  protected:
    EncodeSprites() {
        std::string pattern = (fs::temp_directory_path() / "sprites-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
    }
    ~EncodeSprites() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name)) << text;
        return path(name);
    }

    /// Runs the tool; what it printed is in m_printed, its status is returned.
    int run(const std::string& arguments) {
        const std::string command = std::string("'" ENCODE_SPRITES "' ") + arguments + " 2>&1";
        FILE* output = popen(command.c_str(), "r");
        m_printed.clear();
        for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output))
            m_printed += static_cast<char>(c);
        const int status = pclose(output);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    static std::string blankPicture() {
        std::string text;
        for (int row = 0; row < 76; ++row) text += std::string(106, '.') + "\n";
        return text;
    }

    std::string m_printed;
    fs::path m_folder;
};

TEST_F(EncodeSprites, WritesTheArraysAndTheTableInOrder) {
    const std::string art = write("art.txt", blankPicture());
    ASSERT_EQ(run(path("out.h") + " " + art + " " + art), 0) << m_printed;
    EXPECT_EQ(m_printed, "");

    std::ifstream in(path("out.h"));
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    const auto first = text.find("wait_girl_frame_0{\n    0x6A, 0x00, 0x4C, 0x00, 0xFF, 0x0F,");
    const auto second = text.find("wait_girl_frame_1{");
    EXPECT_LT(first, second);
    EXPECT_LT(second, text.find("wait_girl_frames{"));
    EXPECT_NE(text.find("wait_girl_frames{"), std::string::npos);
}

TEST_F(EncodeSprites, ABadPictureFailsWithItsFileAndLineAndWritesNothing) {
    const std::string good = write("good.txt", blankPicture());
    const std::string bad = write("bad.txt", "; remark\n..o\n");
    EXPECT_EQ(run(path("out.h") + " " + good + " " + bad), 1);
    EXPECT_EQ(m_printed, bad + ":2: pixel 3 is 'o', not '#' or '.'\n");
    EXPECT_FALSE(fs::exists(path("out.h")));
}

TEST_F(EncodeSprites, APictureThatIsNotThereFails) {
    EXPECT_EQ(run(path("out.h") + " " + path("none.txt")), 1);
    EXPECT_EQ(m_printed, path("none.txt") + ": cannot be read\n");
}

TEST_F(EncodeSprites, AHeaderThatCannotBeWrittenFails) {
    const std::string art = write("art.txt", blankPicture());
    EXPECT_EQ(run(path("no/out.h") + " " + art), 1);
    EXPECT_EQ(m_printed, path("no/out.h") + ": cannot be written\n");
}

TEST_F(EncodeSprites, WithoutPicturesItSaysHowItIsUsed) {
    EXPECT_EQ(run(path("out.h")), 1);
    EXPECT_EQ(m_printed, "usage: encode_sprites HEADER PICTURE...\n");
}

} // namespace
