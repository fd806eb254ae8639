// Other processes, as /proc tells of them.
#pragma once

#include <cctype>
#include <filesystem>
#include <fstream>
#include <optional>
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

/// R, S, T (stopped), Z (ended, and nobody has asked for its status yet) and others;
/// nothing when there is no such process.
inline std::optional<char> stateOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    const auto name = text.rfind(')'); // it may hold anything
    if (name == std::string::npos || name + 2 >= text.size()) return std::nullopt;
    return text[name + 2];
}

/// What is in a folder of /proc.
inline std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        names.insert(entry.path().filename().string());
    return names;
}

/// What a process has open under that number, as /proc names it.
inline std::string openAs(pid_t process, int number) {
    std::error_code error;
    return std::filesystem::read_symlink(
               "/proc/" + std::to_string(process) + "/fd/" + std::to_string(number), error)
        .string();
}

inline bool hasOpen(pid_t process, const std::string& name) {
    for (const auto& number : namesIn("/proc/" + std::to_string(process) + "/fd"))
        if (openAs(process, std::stoi(number)) == name) return true;
    return false;
}

} // namespace oxlade
