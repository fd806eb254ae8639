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
const std::vector<std::string> productFolders{"app", "firmware", "i18n", "ui", "platform"};

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

/// A floor by the folder, but for the plain files that live among others: those
/// are named here, which keeps the list short and its growth seen.
int floorOf(const std::string& file) {
    const auto stem = fs::path{file}.replace_extension().string();
    static const std::set<std::string> logic{// clang-format off
        "app/chunk_decoder", "app/completion", "app/device_state", "app/helper_mode",
        "app/output_parser", "app/output_text", "firmware/image_test", "firmware/path_names",
        "i18n/language_choice", "i18n/string_table", "i18n/window_texts", "ui/menu_tree",
        "ui/semantic_color", "ui/sprites/frame_sequence", "ui/sprites/picture_geometry",
        "ui/sprites/sprite_decoder", "ui/sprites/sprite_format", "ui/sprites/sprite_palette",
        "ui/sprites/sprite_rule", "ui/sprites/wait_girl_frames", "ui/sprites/wait_girl_proof"};
    // clang-format on
    if (logic.contains(stem)) return 0;
    if (stem == "app/main" || stem == "app/build_facts") return 4;
    if (file.starts_with("platform/")) return 2;
    if (file.starts_with("ui/")) return 3;
    return 1;
}

bool isOfToolkit(const std::string& header) {
    return header.starts_with("Q") || header.starts_with("qt") || header.starts_with("Qt");
}

bool isOfSystem(const std::string& header) {
    return header == "unistd.h" || header == "spawn.h" || header == "poll.h" ||
           header.starts_with("sys/") || header == "thread" || header == "mutex" ||
           header == "atomic";
}

} // namespace

TEST(Structure, EveryFileStandsOnlyOnItsOwnFloorAndThoseBelow) {
    for (const auto& file : sourcesIn(productFolders))
        for (const auto& included : includesOf(file).ours)
            EXPECT_LE(floorOf(included), floorOf(file)) << file << " includes " << included;
}

TEST(Structure, TheLowerFloorsKnowNeitherToolkitNorThreads) {
    for (const auto& file : sourcesIn(productFolders)) {
        if (floorOf(file) > 1) continue;
        for (const auto& header : includesOf(file).system) {
            EXPECT_FALSE(isOfToolkit(header)) << file << " includes " << header;
            EXPECT_FALSE(isOfSystem(header)) << file << " includes " << header;
        }
    }
}

TEST(Structure, ThreadsAreMadeOnlyInThePlatform) {
    for (const auto& file : sourcesIn({"app", "firmware", "i18n", "ui"}))
        EXPECT_EQ(contentsOf(file).find("std::thread"), std::string::npos) << file;
}

TEST(Structure, NoCircleOfIncludes) {
    std::map<std::string, Files> graph;
    for (const auto& file : sourcesIn(productFolders)) graph[file] = includesOf(file).ours;
    std::set<std::string> done, open;
    std::function<void(const std::string&)> visit = [&](const std::string& file) {
        if (done.contains(file)) return;
        ASSERT_FALSE(open.contains(file)) << "a circle through " << file;
        open.insert(file);
        for (const auto& included : graph[file]) visit(included);
        open.erase(file);
        done.insert(file);
    };
    for (const auto& file : sourcesIn(productFolders)) visit(file);
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
