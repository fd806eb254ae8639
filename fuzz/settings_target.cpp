// Any bytes as the file of the user's settings.
#include "fuzz/fuzz_target.h"
#include "i18n/string_table.h"
#include "platform/user_environment.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

using namespace oxlade;
using namespace oxlade::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto folder =
        std::filesystem::temp_directory_path() / ("oxlade-settings-" + std::to_string(getpid()));
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    std::filesystem::create_directories(folder / "Oxlade");
    std::ofstream(folder / "Oxlade/Oxlade.conf", std::ios::binary) << textOf(data, size);

    const auto stored = QtUserDefaults().string(interfaceLanguageKey);
    const auto language = languageAtStart(stored, {});
    mustHold(language == 0 || language == 1, "there is a language");
    std::filesystem::remove_all(folder);
    return 0;
}
