// Bundle, files and settings, on a real disk.
#include "platform/bundle.h"
#include "platform/file_system.h"
#include "platform/user_environment.h"
#include "tests/platform/temporary_folder.h"

#include <QCoreApplication>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace oxlade {
namespace {

std::string versionIn(std::string_view list) {
    return bundleVersion(QByteArrayView(list.data(), static_cast<qsizetype>(list.size())));
}

std::string propertyList(const std::string& entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><dict>" +
           entries + "</dict></plist>\n";
}

const std::string versionEntry = "<key>CFBundleShortVersionString</key> <string>1.2.3</string>";

TEST(BundleVersion, IsTheStringOfItsKeyWhereverItStands) {
    EXPECT_EQ(versionIn(propertyList(versionEntry)), "1.2.3");
    EXPECT_EQ(versionIn(propertyList("<key>A</key><string>x</string>" + versionEntry +
                                     "<key>B</key><true/>")),
              "1.2.3");
    EXPECT_EQ(versionIn(propertyList("<key>CFBundleVersion</key><string>9</string>"
                                     "<key>L</key><array><string>y</string></array>" +
                                     versionEntry)),
              "1.2.3");
    EXPECT_EQ(versionIn(propertyList("<key>CFBundleShortVersionString</key>"
                                     "<string>1 &amp; \xD0\x96</string>")),
              "1 & \xD0\x96");
}

TEST(BundleVersion, IsEmptyWhereThereIsNone) {
    EXPECT_EQ(versionIn(propertyList("")), "");
    EXPECT_EQ(versionIn(propertyList("<key>CFBundleShortVersionString</key>")), "");
    EXPECT_EQ(versionIn(propertyList("<key>CFBundleShortVersionString</key><string/>")), "");
    EXPECT_EQ(versionIn(propertyList("<key>CFBundleShortVersionString</key><integer>1</integer>"
                                     "<string>2</string>")),
              "");
    EXPECT_EQ(versionIn(propertyList("<key>Inner</key><dict>" + versionEntry + "</dict>")), "");
}

TEST(BundleVersion, IsEmptyForAMalformedList) {
    const auto whole = propertyList(versionEntry);
    for (std::size_t size = 0; size + 2 < whole.size(); ++size)
        EXPECT_EQ(versionIn(std::string_view(whole).substr(0, size)), "") << size;
    EXPECT_EQ(versionIn(whole + "<more/>"), "");
    EXPECT_EQ(versionIn("bplist00\xD1\x01\x02"), "");
    EXPECT_EQ(versionIn(std::string_view("\0\0\0\0", 4)), "");
    EXPECT_EQ(versionIn("<dict>" + versionEntry + "</dict>"), "");
    EXPECT_EQ(versionIn("<plist><array>" + versionEntry + "</array></plist>"), "");
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "<dict>";
    EXPECT_EQ(versionIn("<plist>" + deep), "");
}

TEST(ApplicationBundle, IsFoundAroundItsExecutable) {
    const TemporaryFolder folder;
    folder.file("X.app/Contents/MacOS/program");
    const auto image = folder.file("X.app/Contents/Resources/image.bin");
    folder.file("X.app/Contents/Info.plist", propertyList(versionEntry));
    const QtBundle bundle(folder.path("X.app/Contents/MacOS"));
    EXPECT_EQ(bundle.bundlePath(), folder.path("X.app"));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), image);
    EXPECT_EQ(bundle.version(), "1.2.3");
}

TEST(ApplicationBundle, OutsideOfABundleEverythingIsBesideTheExecutable) {
    const TemporaryFolder folder;
    const auto image = folder.file("image.bin");
    const QtBundle bundle(folder.path("."));
    EXPECT_EQ(bundle.bundlePath(), folder.path("."));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), folder.path("./image.bin"));
    EXPECT_EQ(bundle.version(), "");
}

TEST(ApplicationBundle, IsAbsoluteAlsoAtTheRoot) {
    EXPECT_EQ(QtBundle("/Contents/MacOS").bundlePath(), "/");
    EXPECT_EQ(QtBundle("").bundlePath(), "/");
}

TEST(ApplicationBundle, LooksForAResourceAnewEachTime) {
    const TemporaryFolder folder;
    const QtBundle bundle(folder.path("."));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt);
    folder.file("image.bin");
    EXPECT_NE(bundle.pathForResource("image", "bin"), std::nullopt);
    folder.remove("image.bin");
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt);
    std::filesystem::create_directory(folder.path("image.bin"));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt) << "a directory is no file";
}

TEST(ApplicationBundle, TheRunningExecutableIsFoundThroughLinks) {
    char resolved[PATH_MAX];
    ASSERT_GT(readlink("/proc/self/exe", resolved, sizeof resolved), 0);
    EXPECT_EQ(std::string(resolved).rfind(executableDirectory() + '/', 0), 0u);
    EXPECT_FALSE(executableDirectory().ends_with('/'));
}

TEST(PosixFileSystem, OnlyAFileThatMayBeExecutedIsAnExecutableFile) {
    const TemporaryFolder folder;
    const PosixFileSystem files;
    EXPECT_TRUE(files.isExecutableFile(folder.program("program")));
    EXPECT_FALSE(files.isExecutableFile(folder.file("plain")));
    EXPECT_FALSE(files.isExecutableFile(folder.path()));
    EXPECT_FALSE(files.isExecutableFile(folder.path("missing")));
    EXPECT_FALSE(files.isExecutableFile(""));
    std::filesystem::create_symlink(folder.path("program"), folder.path("link"));
    EXPECT_TRUE(files.isExecutableFile(folder.path("link")));
}

TEST(PosixFileSystem, SizesAreInBytesAndNoneIsZero) {
    const TemporaryFolder folder;
    const PosixFileSystem files;
    EXPECT_EQ(files.fileSize(folder.file("file", "12345")), 5u);
    EXPECT_EQ(files.fileSize(folder.path("missing")), 0u);
}

TEST(PosixFileSystem, TheHeadIsWhatTheFileBeginsWith) {
    const TemporaryFolder folder;
    const PosixFileSystem files;
    const std::string bytes("ab\0\xFF"
                            "cd",
                            6);
    const auto file = folder.file("file", bytes);
    EXPECT_EQ(files.head(file, 4), bytes.substr(0, 4));
    EXPECT_EQ(files.head(file, 6), bytes);
    EXPECT_EQ(files.head(file, 100), bytes);
    EXPECT_EQ(files.head(file, 0), "");
    EXPECT_EQ(files.head(folder.path("missing"), 4), "");
    EXPECT_EQ(files.head(folder.path(), 4), "");
    EXPECT_EQ(files.head("/dev/zero", 4), "");
}

TEST(PosixFileSystem, APipeIsNeverWaitedFor) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(PosixFileSystem().head(folder.path("pipe"), 4), "");
}

TEST(PosixFileSystem, TheCurrentDirectoryIsTheProcesss) {
    EXPECT_EQ(PosixFileSystem().currentDirectoryPath(), std::filesystem::current_path().string());
}

// One folder for all: the toolkit asks once where settings are.
class UserDefaultsTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<TemporaryFolder>();
        setenv("XDG_CONFIG_HOME", folder_->path().c_str(), 1);
    }
    static void TearDownTestSuite() { folder_.reset(); }
    ~UserDefaultsTest() override { std::filesystem::remove_all(folder_->path("Oxlade")); }

    // What is read when the settings' file has this line.
    static std::optional<std::string> stored(const std::string& line) {
        folder_->file("Oxlade/Oxlade.conf", "[General]\n" + line + '\n');
        return QtUserDefaults().string("InterfaceLanguage");
    }

    static std::unique_ptr<TemporaryFolder> folder_;
};

std::unique_ptr<TemporaryFolder> UserDefaultsTest::folder_;

TEST_F(UserDefaultsTest, NothingIsWrittenBeforeSomethingIsStored) {
    {
        const QtUserDefaults defaults;
        EXPECT_EQ(defaults.string("InterfaceLanguage"), std::nullopt);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder_->path()));
}

TEST_F(UserDefaultsTest, WhatWasStoredIsThereAtTheNextStart) {
    for (const std::string value : {"ru", "en", "", " spaced ", "@At", "a,b", "\xD0\x96\n\"x\""}) {
        QtUserDefaults first;
        first.setString("InterfaceLanguage", value);
        EXPECT_EQ(first.string("InterfaceLanguage"), value);
        EXPECT_EQ(QtUserDefaults().string("InterfaceLanguage"), value);
    }
}

TEST_F(UserDefaultsTest, AnEmptyTextIsNotTheSameAsNone) {
    QtUserDefaults().setString("InterfaceLanguage", "");
    EXPECT_EQ(QtUserDefaults().string("InterfaceLanguage"), "");
    EXPECT_EQ(QtUserDefaults().string("Other"), std::nullopt);
}

TEST_F(UserDefaultsTest, OddContentDoesNoHarm) {
    EXPECT_EQ(stored("InterfaceLanguage=ru"), "ru");
    EXPECT_EQ(stored("InterfaceLanguage=ru, en"), std::nullopt);
    EXPECT_EQ(stored("InterfaceLanguage=@Invalid()"), std::nullopt);
    EXPECT_EQ(stored("InterfaceLanguage=@ByteArray(ru)"), "ru");
    EXPECT_EQ(stored("InterfaceLanguage=@Size(1 2)"), std::nullopt);
    EXPECT_EQ(stored("InterfaceLanguage=@Variant(\\0\\0\\0\\x7f\\xff\\xff)"), std::nullopt);
    EXPECT_EQ(stored("InterfaceLanguage=42"), "42");
    EXPECT_EQ(stored("no equals sign"), std::nullopt);
    EXPECT_EQ(stored(std::string("\0\xFF\xFE", 3)), std::nullopt);
}

TEST(PreferredLanguages, TheFirstIsTheMostWanted) {
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("LANGUAGE", "ru_RU:en_GB", 1);
    const auto names = preferredLanguages();
    ASSERT_GE(names.size(), 2u);
    EXPECT_EQ(names.front(), "ru-RU");
    EXPECT_NE(std::find(names.begin(), names.end(), "en-GB"), names.end());
}

} // namespace
} // namespace oxlade
