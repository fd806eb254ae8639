// Files, through POSIX calls.
#pragma once

#include "interfaces/system.h"

namespace oxlade {

class PosixFileSystem final : public FileSystem {
  public:
    bool isExecutableFile(const std::string& path) const override;
    /// Empty when the directory has been removed.
    std::string currentDirectoryPath() const override;
    std::uint64_t fileSize(const std::string& path) const override;
    /// A file on which another process holds a lease: waits up to 2 s for it to be released.
    std::string head(const std::string& path, std::size_t limit) const override;
};

/// Whether reading the file neither blocks nor goes on for ever, as it may with a pipe or a
/// device. False when there is no such file.
bool isRegularFile(const std::string& path);

} // namespace oxlade
