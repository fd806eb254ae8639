// A folder that is removed with the test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace oxlade::test {

class TemporaryFolder final {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "oxlade-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
        path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(std::string_view name = {}) const { return (path_ / name).string(); }
    /// Makes a file and its folders; returns its path.
    std::string file(std::string_view name, std::string_view content = {}) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path(name);
    }
    std::string program(std::string_view name, std::string_view content = {}) const {
        auto made = file(name, content);
        std::filesystem::permissions(made, std::filesystem::perms::owner_all);
        return made;
    }
    void remove(std::string_view name) const { std::filesystem::remove(path_ / name); }

  private:
    std::filesystem::path path_;
};

} // namespace oxlade::test
