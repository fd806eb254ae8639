#include "platform/font_cache.h"

#ifdef __linux__

#include <fontconfig/fontconfig.h>
#include <system_error>
#include <thread>

namespace oxlade {

void readFontsAhead() {
    try {
        std::thread([] { FcInit(); }).detach();
    } catch (const std::system_error&) {
        // The toolkit reads it later.
    }
}

} // namespace oxlade

#else

namespace oxlade {

void readFontsAhead() {}

} // namespace oxlade

#endif
