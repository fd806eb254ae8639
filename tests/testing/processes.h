// Facts about processes, from /proc.
#pragma once

#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

namespace oxlade::test {

/// A file or folder of a process, such as "fd".
inline std::filesystem::path inProc(pid_t process, const std::string& name) {
    return "/proc/" + std::to_string(process) + '/' + name;
}

/// The running processes of this very file; a zombie has none.
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

/// The first line of a file of a process; empty when there is no such process.
inline std::string lineOf(pid_t process, const std::string& name) {
    std::ifstream file(inProc(process, name));
    std::string line;
    std::getline(file, line);
    return line;
}

/// R, S, T (stopped), Z (zombie) and others; '\0' when there is no such process.
inline char stateOf(pid_t process) {
    const auto line = lineOf(process, "stat");
    const auto nameEnd = line.rfind(')');
    return nameEnd == line.npos ? '\0' : line.at(nameEnd + 2);
}

/// How often the process has slept, as while it polls; 0 when there is no such process.
inline long sleepsOf(pid_t process) {
    std::ifstream file(inProc(process, "status"));
    const std::string name = "voluntary_ctxt_switches:";
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(name)) return std::stol(line.substr(name.size()));
    return 0;
}

inline std::size_t countOf(pid_t process, const std::string& folder) {
    const std::filesystem::directory_iterator all(inProc(process, folder));
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// What the process has open, such as "pipe:[4711]".
inline std::multiset<std::string> openFiles(pid_t process) {
    std::multiset<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(inProc(process, "fd"), error))
        names.insert(std::filesystem::read_symlink(entry, error).string());
    return names;
}

} // namespace oxlade::test
