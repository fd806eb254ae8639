// Other processes, as /proc tells of them.
#pragma once

#include <cctype>
#include <filesystem>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

namespace oxlade {

/// The living processes that run this very file; a zombie runs none.
inline std::vector<pid_t> processesOf(const std::string& executable) {
    std::vector<pid_t> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const auto name = entry.path().filename().string();
        if (std::isdigit(static_cast<unsigned char>(name.front())) == 0) continue;
        if (std::filesystem::read_symlink(entry.path() / "exe", error) == executable)
            found.push_back(static_cast<pid_t>(std::stol(name)));
    }
    return found;
}

/// What is in a folder of /proc.
inline std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        names.insert(entry.path().filename().string());
    return names;
}

} // namespace oxlade
