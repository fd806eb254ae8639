#include "ui/font_cache.h"

#ifdef __linux__

#include <fontconfig/fontconfig.h>
#include <future>
#include <locale.h> // NOLINT: not all of it is in the C++ header
#include <map>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

namespace oxlade {
namespace {

template <class Thing, void (*destroy)(Thing*)>
struct Destroys {
    void operator()(Thing* thing) const { destroy(thing); }
};
using Pattern = std::unique_ptr<FcPattern, Destroys<FcPattern, FcPatternDestroy>>;

using Families = std::map<std::pair<std::string, FontKind>, std::string>;

std::shared_future<Families> familiesAhead;

const FcChar8* inFontconfig(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

std::string match(const std::string& family, FontKind kind) {
    const Pattern wanted{FcPatternCreate()};
    const char* generic = kind == FontKind::monospaced ? "monospace" : "sans-serif";
    for (const char* name : {family.c_str(), generic})
        FcPatternAddString(wanted.get(), FC_FAMILY, inFontconfig(name));
    // As the toolkit asks for Latin text, whatever the desktop's language.
    FcPatternAddString(wanted.get(), FC_LANG, inFontconfig("en"));
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultMatch;
    const Pattern found{FcFontMatch(nullptr, wanted.get(), &result)};
    FcChar8* name = nullptr;
    if (found == nullptr || FcPatternGetString(found.get(), FC_FAMILY, 0, &name) != FcResultMatch)
        return family;
    return reinterpret_cast<const char*>(name);
}

} // namespace

void readFontsAhead() {
    std::packaged_task<Families()> reading{[] {
        // A locale of its own: the toolkit changes the program's meanwhile, and with it
        // how numbers are read.
        uselocale(newlocale(LC_ALL_MASK, "C", nullptr));
        FcInit();
        Families result;
        // What the toolkit's themes name where the desktop has no fonts of its own.
        for (const auto& [alias, kind] : {std::pair{"Sans Serif", FontKind::proportional},
                                          std::pair{"monospace", FontKind::monospaced}})
            result[{alias, kind}] = match(alias, kind);
        return result;
    }};
    auto families = reading.get_future().share();
    try {
        std::thread(std::move(reading)).detach();
        familiesAhead = std::move(families);
    } catch (const std::system_error&) {
        // Read later.
    }
}

std::string installedFamily(const std::string& family, FontKind kind) {
    if (familiesAhead.valid()) {
        const Families& families = familiesAhead.get();
        const auto known = families.find({family, kind});
        if (known != families.end()) return known->second;
    }
    return match(family, kind);
}

} // namespace oxlade

#else

namespace oxlade {

void readFontsAhead() {}

std::string installedFamily(const std::string& family, FontKind) { return family; }

} // namespace oxlade

#endif
