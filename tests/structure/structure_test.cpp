// Reads the sources' own include lines: what may stand on what.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace oxlade::test {

namespace fs = std::filesystem;
using Files = std::vector<std::string>;

namespace {

const fs::path root = OXLADE_SOURCE_DIR;
const std::vector<std::string> productFolders{"app",      "firmware", "i18n",      "ui",
                                              "platform", "keeper",   "interfaces"};

Files sourcesIn(const std::vector<std::string>& folders) {
    Files files;
    for (const auto& folder : folders)
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const auto extension = entry.path().extension();
            if (extension == ".h" || extension == ".cpp" || extension == ".mm")
                files.push_back(fs::relative(entry.path(), root).string());
        }
    std::sort(files.begin(), files.end());
    return files;
}

std::string contentsOf(const std::string& file) {
    std::ifstream stream{root / file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

struct Includes {
    Files ours, system;
};

Includes includesOf(const std::string& file) {
    Includes includes;
    const auto text = contentsOf(file);
    static const std::regex line{R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])", std::regex::multiline};
    for (std::sregex_iterator match{text.begin(), text.end(), line}, end; match != end; ++match)
        ((*match)[1] == "\"" ? includes.ours : includes.system).push_back((*match)[2]);
    return includes;
}

/// What the files of a folder may include besides their own, and whether they may include Qt.
struct Folder {
    std::vector<std::string> uses;
    bool qt = false;
};

/// Each folder uses only those above it here. "app/main.cpp" is a target of its own.
const std::map<std::string, Folder> folders{
    {"interfaces", {{}}},
    {"keeper", {{"interfaces"}}},
    {"firmware", {{"interfaces"}}},
    {"i18n", {{"interfaces"}}},
    {"platform", {{"interfaces", "keeper"}, true}},
    {"ui/sprites", {{"interfaces"}, true}},
    {"ui", {{"interfaces", "i18n", "ui/sprites"}, true}},
    {"app", {{"interfaces", "i18n", "firmware"}}},
    {"app/main.cpp", {{"app", "interfaces", "i18n", "ui", "platform"}, true}},
};

std::string folderOf(const std::string& file) {
    return folders.contains(file) ? file : fs::path{file}.parent_path().string();
}

bool isOfQt(const std::string& header) {
    return header.starts_with("Q") || header.starts_with("qt") || header.starts_with("Qt");
}

bool isOfSystem(const std::string& header) {
    return header == "unistd.h" || header == "spawn.h" || header == "poll.h" ||
           header.starts_with("sys/") || header == "thread" || header == "mutex" ||
           header == "atomic";
}

} // namespace

TEST(Structure, EveryFolderIncludesOnlyWhatItsRowAllows) {
    for (const auto& file : sourcesIn(productFolders)) {
        const auto folder = folderOf(file);
        ASSERT_TRUE(folders.contains(folder)) << file;
        const auto& uses = folders.at(folder).uses;
        for (const auto& included : includesOf(file).ours) {
            const auto other = folderOf(included);
            EXPECT_TRUE(other == folder || std::count(uses.begin(), uses.end(), other) == 1)
                << file << " includes " << included;
        }
    }
}

TEST(Structure, FoldersWithoutQtIncludeNeitherQtNorThreads) {
    for (const auto& file : sourcesIn(productFolders)) {
        if (folders.at(folderOf(file)).qt || file.starts_with("keeper/")) continue;
        for (const auto& header : includesOf(file).system) {
            EXPECT_FALSE(isOfQt(header)) << file << " includes " << header;
            EXPECT_FALSE(isOfSystem(header)) << file << " includes " << header;
        }
    }
}

TEST(Structure, ThreadsAreMadeOnlyInThePlatform) {
    for (const auto& file : sourcesIn({"app", "firmware", "i18n", "interfaces"}))
        EXPECT_EQ(contentsOf(file).find("std::thread"), std::string::npos) << file;
}

// A header and its source are one unit.
TEST(Structure, NoTwoUnitsIncludeEachOtherInACircle) {
    std::map<std::string, std::set<std::string>> graph;
    const auto unit = [](const std::string& file) {
        return fs::path{file}.replace_extension().string();
    };
    for (const auto& file : sourcesIn(productFolders))
        for (const auto& included : includesOf(file).ours)
            if (unit(included) != unit(file)) graph[unit(file)].insert(unit(included));
    std::set<std::string> done, open;
    std::function<void(const std::string&)> visit = [&](const std::string& each) {
        if (done.contains(each)) return;
        ASSERT_FALSE(open.contains(each)) << "a circle through " << each;
        open.insert(each);
        for (const auto& included : graph[each]) visit(included);
        open.erase(each);
        done.insert(each);
    };
    for (const auto& [each, included] : graph) visit(each);
}

TEST(Structure, TheEntryPointOnlyPutsThePiecesTogether) {
    const auto text = contentsOf("app/main.cpp");
    EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 60);
}

// Neither options nor variables nor a capped log: what the program must not have.
TEST(Structure, TheProgramReadsNoOptionsAndNoEnvironment) {
    for (const auto& file : sourcesIn(productFolders)) {
        auto text = contentsOf(file);
        // Whether there is a session bus at all: asking for one would start it.
        for (const std::string bus : {"qEnvironmentVariableIsSet(\"DBUS_SESSION_BUS_ADDRESS\")",
                                      "qEnvironmentVariable(\"XDG_RUNTIME_DIR\")"})
            if (const auto at = text.find(bus); at != std::string::npos) text.erase(at, bus.size());
        for (const auto* word : {"getenv", "qEnvironmentVariable", "QCommandLine", "getopt",
                                 "setMaximumBlockCount", "arguments()", "QProcess"})
            EXPECT_EQ(text.find(word), std::string::npos) << file << " has " << word;
    }
}

TEST(Structure, EveryTestThatAPaperNamesExists) {
    std::string tests;
    for (const auto& entry : fs::recursive_directory_iterator(root / "tests"))
        if (const auto type = entry.path().extension(); type == ".cpp" || type == ".py")
            tests += contentsOf(fs::relative(entry.path(), root).string());
    int named = 0;
    static const std::regex name{"`([A-Z][A-Za-z0-9]+)\\.([A-Z][A-Za-z0-9]+)`|`(test_[a-z0-9_]+)`"};
    for (const auto* paper : {"docs/faults.md", "tests/NOT_TESTED.md"}) {
        const auto text = contentsOf(paper);
        for (std::sregex_iterator match{text.begin(), text.end(), name}, end; match != end;
             ++match) {
            const auto& found = *match;
            const auto wanted = found[3].matched ? "def " + found[3].str() + "("
                                                 : "(" + found[1].str() + ", " + found[2].str();
            EXPECT_NE(tests.find(wanted), std::string::npos) << paper << ": " << found[0];
            ++named;
        }
    }
    EXPECT_GT(named, 40);
}

TEST(Structure, NoTwoFileNamesDifferOnlyByCase) {
    std::map<std::string, std::string> seen;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        auto name = fs::relative(entry.path(), root).string();
        if (name.starts_with("build") || name.starts_with(".git/")) continue;
        auto lower = name;
        std::transform(lower.begin(), lower.end(), lower.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        const auto [other, isNew] = seen.emplace(lower, name);
        EXPECT_TRUE(isNew) << name << " and " << other->second;
    }
}

} // namespace oxlade::test
