// Bundle, files, settings and standard streams, on a real disk.
#include "platform/bundle.h"
#include "platform/descriptor.h"
#include "platform/file_system.h"
#include "platform/user_environment.h"
#include "tests/testing/temporary_folder.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace oxlade::test {
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

const std::string key = "<key>CFBundleShortVersionString</key>";
const std::string versionEntry = key + " <string>1.2.3</string>";

TEST(BundleVersion, IsTheStringThatFollowsItsKey) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {versionEntry, "1.2.3"},
        {"<key>A</key><string>x</string>" + versionEntry + "<key>B</key><true/>", "1.2.3"},
        {"<key>CFBundleVersion</key><string>9</string>"
         "<key>L</key><array><string>y</string></array>" +
             versionEntry,
         "1.2.3"},
        {key + "<string>1 &amp; \xD0\x96</string>", "1 & \xD0\x96"},
        {"", ""},
        {key, ""},
        {key + "<string/>", ""},
        {key + "<integer>1</integer><string>2</string>", ""},
        {"<key>Inner</key><dict>" + versionEntry + "</dict>", ""},
    };
    for (const auto& [entries, version] : cases)
        EXPECT_EQ(versionIn(propertyList(entries)), version) << entries;
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

TEST(QtBundle, IsFoundFromItsExecutable) {
    const TemporaryFolder folder;
    folder.file("X.app/Contents/MacOS/program");
    const auto image = folder.file("X.app/Contents/Resources/image.bin");
    folder.file("X.app/Contents/Info.plist", propertyList(versionEntry));
    const QtBundle bundle(folder.path("X.app/Contents/MacOS"));
    EXPECT_EQ(bundle.bundlePath(), folder.path("X.app"));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), image);
    EXPECT_EQ(bundle.version(), "1.2.3");
}

TEST(QtBundle, OutsideOfABundleResourcesAreBesideTheExecutable) {
    const TemporaryFolder folder;
    const auto image = folder.file("image.bin");
    const QtBundle bundle(folder.path("."));
    EXPECT_EQ(bundle.bundlePath(), folder.path("."));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), folder.path("./image.bin"));
    EXPECT_EQ(bundle.version(), "");
}

TEST(QtBundle, IsAbsoluteAlsoAtTheRoot) {
    EXPECT_EQ(QtBundle("/Contents/MacOS").bundlePath(), "/");
    EXPECT_EQ(QtBundle("").bundlePath(), "/");
}

TEST(QtBundle, LooksForAResourceAtEachCall) {
    const TemporaryFolder folder;
    const QtBundle bundle(folder.path("."));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt);
    folder.file("image.bin");
    EXPECT_NE(bundle.pathForResource("image", "bin"), std::nullopt);
    folder.remove("image.bin");
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt);
    std::filesystem::create_directory(folder.path("image.bin"));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt) << "a directory is no file";
    folder.remove("image.bin");
    std::filesystem::create_symlink("/nowhere", folder.path("image.bin"));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), std::nullopt) << "nor is a dangling link";
}

TEST(QtBundle, TheRunningExecutableIsFoundThroughLinks) {
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

TEST(PosixFileSystem, SizesAreInBytesAndThatOfAMissingFileIsZero) {
    const TemporaryFolder folder;
    const PosixFileSystem files;
    EXPECT_EQ(files.fileSize(folder.file("file", "12345")), 5u);
    EXPECT_EQ(files.fileSize(folder.path("missing")), 0u);
    std::filesystem::create_symlink(folder.path("file"), folder.path("link"));
    EXPECT_EQ(files.fileSize(folder.path("link")), 5u);
}

// In a process of its own, which may have to become another user: root may execute it.
TEST(PosixFileSystem, AFileThatOnlyOtherUsersMayExecuteIsNotExecutable) {
    const TemporaryFolder folder;
    const auto program = folder.program("program");
    const bool isRoot = geteuid() == 0;
    chmod(folder.path().c_str(), 0755);
    chmod(program.c_str(), isRoot ? 0700 : 0077);
    const pid_t process = fork();
    if (process == 0) {
        constexpr uid_t freshUser = 2047483646; // of no other test
        if (isRoot && setresuid(freshUser, freshUser, freshUser) != 0) _exit(2);
        _exit(PosixFileSystem().isExecutableFile(program) ? 1 : 0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
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

TEST(PosixFileSystem, ReadingAPipeDoesNotBlock) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(PosixFileSystem().head(folder.path("pipe"), 4), "");
}

// A write lease on a file; the kernel asks for its release by SIGIO.
class Lease final {
  public:
    Lease(const std::string& path, bool isReleasedWhenAsked)
        : file_(open(path.c_str(), O_RDWR | O_CLOEXEC)) {
        number_ = file_.get();
        asked = 0;
        releases_ = isReleasedWhenAsked;
        std::signal(SIGIO, [](int) {
            asked = asked + 1;
            if (releases_) fcntl(number_, F_SETLEASE, F_UNLCK);
        });
        EXPECT_EQ(fcntl(number_, F_SETLEASE, F_WRLCK), 0);
    }
    ~Lease() {
        file_.reset();
        std::signal(SIGIO, SIG_DFL);
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    static inline volatile std::sig_atomic_t asked = 0;

  private:
    Descriptor file_;
    static inline volatile std::sig_atomic_t number_ = -1;
    static inline volatile std::sig_atomic_t releases_ = 0;
};

TEST(PosixFileSystem, ALeasedFileIsReadOnceTheLeaseIsReleasedElseItIsUnreadable) {
    const TemporaryFolder folder;
    const auto path = folder.file("image", "content");
    for (const bool isReleased : {true, false}) {
        const Lease lease(path, isReleased);
        EXPECT_EQ(PosixFileSystem().head(path, 4), isReleased ? "cont" : "");
        EXPECT_EQ(Lease::asked, 1);
    }
}

TEST(PosixFileSystem, TheCurrentDirectoryIsTheProcesss) {
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    EXPECT_EQ(PosixFileSystem().currentDirectoryPath(), before.string());
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(PosixFileSystem().currentDirectoryPath(), std::filesystem::current_path().string());
    std::filesystem::current_path(before);
}

class UserDefaultsTest : public testing::Test {
  protected:
    UserDefaultsTest() { setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1); }

    // What is read when the settings file has this line.
    std::optional<std::string> stored(const std::string& line) const {
        folder_.file("Oxlade/Oxlade.conf", "[General]\n" + line + '\n');
        return QtUserDefaults().string("InterfaceLanguage");
    }

    const TemporaryFolder folder_;
};

TEST_F(UserDefaultsTest, NothingIsWrittenBeforeSomethingIsStored) {
    {
        const QtUserDefaults defaults;
        EXPECT_EQ(defaults.string("InterfaceLanguage"), std::nullopt);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(UserDefaultsTest, WhatWasStoredIsThereAtTheNextStart) {
    for (const std::string value : {"ru", "en", "", " spaced ", "@At", "a,b", "\xD0\x96\n\"x\""}) {
        QtUserDefaults first;
        first.setString("InterfaceLanguage", value);
        EXPECT_TRUE(std::filesystem::exists(folder_.path("Oxlade/Oxlade.conf"))) << "at once";
        EXPECT_EQ(first.string("InterfaceLanguage"), value);
        EXPECT_EQ(QtUserDefaults().string("InterfaceLanguage"), value);
        EXPECT_EQ(QtUserDefaults().string("Other"), std::nullopt);
    }
}

TEST_F(UserDefaultsTest, TheSettingsOfTheWholeComputerDoNotCount) {
    setenv("XDG_CONFIG_DIRS", folder_.path("computer").c_str(), 1);
    for (const char* const name :
         {"computer/Oxlade/Oxlade.conf", "computer/Oxlade.conf", "Oxlade.conf"})
        folder_.file(name, "[General]\nInterfaceLanguage=ru\n");
    EXPECT_EQ(QtUserDefaults().string("InterfaceLanguage"), std::nullopt);
}

TEST_F(UserDefaultsTest, APipeInTheFilesPlaceIsNotOpened) {
    std::filesystem::create_directory(folder_.path("Oxlade"));
    ASSERT_EQ(mkfifo(folder_.path("Oxlade/Oxlade.conf").c_str(), 0600), 0);
    QtUserDefaults defaults;
    EXPECT_EQ(defaults.string("InterfaceLanguage"), std::nullopt);
    defaults.setString("InterfaceLanguage", "ru");
    EXPECT_EQ(defaults.string("InterfaceLanguage"), std::nullopt);
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

TEST(PreferredLanguages, AreThoseOfTheVariableLanguageButInTheLocaleC) {
    setenv("LANGUAGE", "ru_RU:en_GB", 1);
    for (const char* const untranslated : {"C", "POSIX"}) {
        setenv("LC_ALL", untranslated, 1);
        EXPECT_TRUE(preferredLanguages().empty()) << untranslated;
    }
    for (const char* const translated : {"C.UTF-8", "de_DE.UTF-8"}) {
        setenv("LC_ALL", translated, 1);
        const auto names = preferredLanguages();
        ASSERT_GE(names.size(), 2u) << translated;
        EXPECT_EQ(names.front(), "ru-RU");
        EXPECT_NE(std::find(names.begin(), names.end(), "en-GB"), names.end());
    }
    for (const char* const variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
        unsetenv(variable);
    setenv("LANG", "ru_RU.UTF-8", 1); // not installed here
    EXPECT_EQ(preferredLanguages().front(), "ru-RU");
}

// In a process of its own, whose exit status tells which streams were closed before.
int openedStreams(unsigned closed) {
    const pid_t process = fork();
    if (process == 0) {
        struct stat null {};
        stat("/dev/null", &null);
        const int lowest = fcntl(1, F_DUPFD, 3);
        close(lowest);
        for (int stream = 0; stream < 3; ++stream)
            if ((closed >> stream & 1) != 0) close(stream);
        struct stat before {};
        const bool hadInput = fstat(0, &before) == 0;
        openClosedStandardStreams();
        if (fcntl(1, F_DUPFD, 3) != lowest) _exit(102); // another one was opened
        struct stat facts[3]{};
        int opened = 0;
        for (int stream = 0; stream < 3; ++stream) {
            if (fstat(stream, &facts[stream]) != 0) _exit(100);
            if ((closed >> stream & 1) != 0 && facts[stream].st_rdev == null.st_rdev)
                opened |= 1 << stream;
        }
        if (hadInput && before.st_ino != facts[0].st_ino) _exit(101);
        _exit(opened);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return WEXITSTATUS(status);
}

TEST(StandardStreams, ThoseThatAreClosedAreOpenedAsDevNull) {
    for (unsigned closed = 0; closed < 8; ++closed)
        EXPECT_EQ(openedStreams(closed), static_cast<int>(closed));
}

} // namespace
} // namespace oxlade::test
