// Files as the system has them.
#pragma once

#include "interfaces/system.h"

namespace oxlade {

class PosixFileSystem final : public FileSystem {
  public:
    bool isExecutableFile(const std::string& path) const override;
    /// Empty when the directory has been removed.
    std::string currentDirectoryPath() const override;
    std::uint64_t fileSize(const std::string& path) const override;
    std::string head(const std::string& path, std::size_t limit) const override;
};

} // namespace oxlade
