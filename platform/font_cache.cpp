#include "platform/font_cache.h"

#ifdef __linux__

#include <fontconfig/fontconfig.h>
#include <future>
#include <map>
#include <memory>
#include <system_error>
#include <thread>

namespace oxlade {
namespace {

template <class Thing, void (*destroy)(Thing*)>
struct Destroys {
    void operator()(Thing* thing) const { destroy(thing); }
};
using Pattern = std::unique_ptr<FcPattern, Destroys<FcPattern, FcPatternDestroy>>;
using Languages = std::unique_ptr<FcLangSet, Destroys<FcLangSet, FcLangSetDestroy>>;

using Families = std::map<std::string, std::string>;

std::shared_future<Families> familiesAhead;

const FcChar8* inFontconfig(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

std::string match(const std::string& family) {
    const Pattern wanted{FcPatternCreate()};
    FcPatternAddString(wanted.get(), FC_FAMILY, inFontconfig(family.c_str()));
    const Languages languages{FcLangSetCreate()};
    for (const char* language : {"en", "ru"}) FcLangSetAdd(languages.get(), inFontconfig(language));
    FcPatternAddLangSet(wanted.get(), FC_LANG, languages.get());
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
        FcInit();
        Families result;
        // What the toolkit's themes name where the desktop has no fonts of its own.
        for (const char* alias : {"Sans Serif", "monospace"}) result[alias] = match(alias);
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

std::string installedFamily(const std::string& family) {
    if (familiesAhead.valid()) {
        const Families& families = familiesAhead.get();
        if (const auto known = families.find(family); known != families.end()) return known->second;
    }
    return match(family);
}

} // namespace oxlade

#else

namespace oxlade {

void readFontsAhead() {}

std::string installedFamily(const std::string& family) { return family; }

} // namespace oxlade

#endif
