// Bundle, files, settings and standard streams, on a real disk.
#include "platform/bundle.h"
#include "platform/descriptor.h"
#include "platform/file_system.h"
#include "platform/user_environment.h"
#include "tests/testing/temporary_folder.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
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
        {"<string>0</string>" + versionEntry, "1.2.3"},
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
    EXPECT_EQ(versionIn("<list><dict>" + versionEntry + "</dict></list>"), "");
    EXPECT_EQ(versionIn("<plist><array>" + versionEntry + "</array></plist>"), "");
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "<dict>";
    EXPECT_EQ(versionIn("<plist>" + deep), "");
}

TEST(QtBundle, IsTheDirectoryAboveContentsOrElseThatOfTheExecutable) {
    const TemporaryFolder folder;
    const auto image = folder.file("X.app/Contents/Resources/image.bin");
    folder.file("X.app/Contents/Info.plist", propertyList(versionEntry));
    const QtBundle bundle(folder.path("X.app/Contents/MacOS"));
    EXPECT_EQ(bundle.bundlePath(), folder.path("X.app"));
    EXPECT_EQ(bundle.pathForResource("image", "bin"), image);
    EXPECT_EQ(bundle.version(), "1.2.3");
    folder.file("plain");
    const QtBundle directory(folder.path("."));
    EXPECT_EQ(directory.bundlePath(), folder.path("."));
    EXPECT_EQ(directory.pathForResource("plain", ""), folder.path("./plain"));
    EXPECT_EQ(directory.version(), "");
    for (const char* const root : {"/Contents/MacOS", ""})
        EXPECT_EQ(QtBundle(root).bundlePath(), "/");
}

TEST(QtBundle, LooksForAResourceAtEachCall) {
    const TemporaryFolder folder;
    const auto image = folder.path("./image.bin");
    const auto isFound = [bundle = QtBundle(folder.path(".")), &image] {
        return bundle.pathForResource("image", "bin") == image;
    };
    EXPECT_FALSE(isFound());
    folder.file("image.bin");
    EXPECT_TRUE(isFound());
    folder.remove("image.bin");
    std::filesystem::create_directory(image);
    EXPECT_FALSE(isFound()) << "a directory is no file";
    folder.remove("image.bin");
    std::filesystem::create_symlink("/nowhere", image);
    EXPECT_FALSE(isFound()) << "nor is a dangling link";
}

TEST(QtBundle, TheRunningExecutableIsFoundThroughLinks) {
    char resolved[PATH_MAX];
    ASSERT_GT(readlink("/proc/self/exe", resolved, sizeof resolved), 0);
    EXPECT_EQ(executableDirectory(), std::filesystem::path(resolved).parent_path());
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

// The wait status of a child process that runs the task and exits with what it returns.
template <typename Task>
int statusOfChild(Task task) {
    const pid_t process = fork();
    if (process == 0) _exit(task());
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return status;
}

TEST(PosixFileSystem, AFileThatOnlyOtherUsersMayExecuteIsNotExecutable) {
    const TemporaryFolder folder;
    const auto program = folder.program("program");
    const bool isRoot = geteuid() == 0; // who may execute it: the child becomes somebody else
    chmod(folder.path().c_str(), 0755);
    chmod(program.c_str(), isRoot ? 0700 : 0077);
    EXPECT_EQ(statusOfChild([&] {
                  const uid_t user = 2'000'000'000 + static_cast<uid_t>(getpid());
                  if (isRoot && setresuid(user, user, user) != 0) return 2;
                  return PosixFileSystem().isExecutableFile(program) ? 1 : 0;
              }),
              0);
}

TEST(PosixFileSystem, TheHeadIsWhatAFileBeginsWith) {
    const TemporaryFolder folder;
    const PosixFileSystem files;
    const std::string bytes("ab\0\xFF"
                            "cd",
                            6);
    const auto file = folder.file("file", bytes);
    for (const std::size_t limit : {0UL, 1UL, 4UL, 6UL, 100UL, SIZE_MAX})
        EXPECT_EQ(files.head(file, limit), bytes.substr(0, limit));
    const auto pipe = folder.path("pipe"); // opening it would block
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& other :
         {folder.path("missing"), folder.path(), std::string("/dev/zero"), pipe})
        EXPECT_EQ(files.head(other, 4), "");
    const auto large = folder.file("large", std::string(10000, 'x') + "yz");
    EXPECT_EQ(files.head(large, 10001), std::string(10000, 'x') + 'y');
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

// Else the main thread would wait: the count of its waits tells, however busy the machine.
TEST(PosixFileSystem, AFileThatCannotBeOpenedForAnotherReasonIsUnreadableAtOnce) {
    const TemporaryFolder folder;
    const auto waits = [] {
        rusage usage{};
        getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nvcsw;
    };
    const auto waitsBefore = waits();
    EXPECT_EQ(PosixFileSystem().head(folder.path("missing"), 4), "");
    EXPECT_LT(waits() - waitsBefore, 10);
}

TEST(PosixFileSystem, TheCurrentDirectoryIsTheProcesssAndThatOfARemovedOneIsEmpty) {
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    EXPECT_EQ(PosixFileSystem().currentDirectoryPath(), before.string());
    const auto deep = folder.path(std::string(200, 'x') + '/' + std::string(200, 'y'));
    std::filesystem::create_directories(deep);
    std::filesystem::current_path(deep);
    EXPECT_EQ(PosixFileSystem().currentDirectoryPath(), std::filesystem::current_path().string());
    std::filesystem::remove(deep);
    EXPECT_EQ(PosixFileSystem().currentDirectoryPath(), "");
    std::filesystem::current_path(before);
}

class UserDefaultsTest : public testing::Test {
  protected:
    UserDefaultsTest() { setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1); }
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
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
        {"InterfaceLanguage=ru", "ru"},
        {"InterfaceLanguage=ru, en", std::nullopt},
        {"InterfaceLanguage=@Invalid()", std::nullopt},
        {"InterfaceLanguage=@ByteArray(ru)", "ru"},
        {"InterfaceLanguage=@Size(1 2)", std::nullopt},
        {"InterfaceLanguage=@Variant(\\0\\0\\0\\x7f\\xff\\xff)", std::nullopt},
        {"InterfaceLanguage=42", "42"},
        {"no equals sign", std::nullopt},
        {std::string("\0\xFF\xFE", 3), std::nullopt}};
    for (const auto& [line, value] : cases) {
        folder_.file("Oxlade/Oxlade.conf", "[General]\n" + line + '\n');
        EXPECT_EQ(QtUserDefaults().string("InterfaceLanguage"), value) << line;
    }
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

TEST(Descriptor, ClosingKeepsErrno) {
    errno = EMFILE;
    Descriptor(INT_MAX).reset(); // which fails
    EXPECT_EQ(errno, EMFILE);
}

TEST(Descriptor, OfTheNumberZeroIsClosed) {
    EXPECT_EQ(statusOfChild([] {
                  openClosedStandardStreams();
                  Descriptor(0).reset();
                  return fcntl(0, F_GETFD) < 0 ? 0 : 1;
              }),
              0);
}

TEST(DescriptorCalls, OnlyAnInterruptedCallIsRepeated) {
    for (const int last : {EAGAIN, 0}) {
        int calls = 0;
        const int result = uninterrupted([&] {
            errno = ++calls < 3 ? EINTR : last;
            return calls < 3 ? -1 : -last;
        });
        EXPECT_EQ(calls, 3);
        EXPECT_EQ(result, -last);
    }
    errno = EINTR;
    EXPECT_EQ(uninterrupted([] { return 0; }), 0);
}

// In a child: opens those of the standard streams whose bits are set. Returns a bit for each
// that is /dev/null afterwards; 8 for another descriptor that was opened.
int openedStreams(unsigned closed) {
    const auto pipe = makePipe(); // reading it fails
    const auto nextDescriptor = [&] { return Descriptor(fcntl(pipe->second.get(), F_DUPFD, 3)); };
    const int next = nextDescriptor().get();
    for (int stream = 0; stream < 3; ++stream)
        (closed >> stream & 1) != 0 ? close(stream) : dup2(pipe->second.get(), stream);
    openClosedStandardStreams();
    int opened = nextDescriptor().get() == next ? 0 : 8;
    for (int stream = 0; stream < 3; ++stream) {
        char byte = 0;
        if (read(stream, &byte, 1) == 0 && write(stream, &byte, 1) == 1) opened |= 1 << stream;
    }
    return opened;
}

TEST(StandardStreams, ThoseThatAreClosedAreOpenedAsDevNull) {
    for (unsigned closed = 0; closed < 8; ++closed)
        EXPECT_EQ(WEXITSTATUS(statusOfChild([=] { return openedStreams(closed); })),
                  static_cast<int>(closed));
}

} // namespace
} // namespace oxlade::test
