#include "ui/fonts.h"

#include "ui/text.h"

#include <QApplication>
#include <QFontDatabase>

#ifdef __linux__
#include <fontconfig/fontconfig.h>
#include <future>
#include <locale.h> // NOLINT: not all of it is in the C++ header
#include <map>
#include <memory>
#include <set>
#include <system_error>
#include <thread>
#include <utility>
#endif

namespace oxlade {

#ifdef __linux__

namespace {

template <class Thing, void (*destroy)(Thing*)>
struct Destroys {
    void operator()(Thing* thing) const { destroy(thing); }
};
using Pattern = std::unique_ptr<FcPattern, Destroys<FcPattern, FcPatternDestroy>>;
using ObjectSet = std::unique_ptr<FcObjectSet, Destroys<FcObjectSet, FcObjectSetDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, Destroys<FcFontSet, FcFontSetDestroy>>;

using Families = std::map<std::pair<std::string, FontKind>, std::string>;

std::shared_future<Families> familiesAhead;

const FcChar8* inFontconfig(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

/// Whether the family has faces of its own for Medium and DemiBold.
bool hasLabelWeights(const std::string& family) {
    const Pattern wanted{FcPatternCreate()};
    FcPatternAddString(wanted.get(), FC_FAMILY, inFontconfig(family.c_str()));
    const ObjectSet objects{FcObjectSetBuild(FC_WEIGHT, nullptr)};
    const FontSet faces{FcFontList(nullptr, wanted.get(), objects.get())};
    std::set<int> weights;
    for (int face = 0; faces != nullptr && face < faces->nfont; ++face) {
        int weight = 0;
        if (FcPatternGetInteger(faces->fonts[face], FC_WEIGHT, 0, &weight) == FcResultMatch)
            weights.insert(weight);
    }
    return weights.count(FC_WEIGHT_MEDIUM) > 0 && weights.count(FC_WEIGHT_DEMIBOLD) > 0;
}

std::string match(const std::string& family, FontKind kind) {
    const Pattern wanted{FcPatternCreate()};
    const char* generic = kind == FontKind::monospaced ? "monospace" : "sans-serif";
    for (const char* name : {family.c_str(), generic})
        FcPatternAddString(wanted.get(), FC_FAMILY, inFontconfig(name));
    // As Qt asks for Latin text, whatever the desktop's language.
    FcPatternAddString(wanted.get(), FC_LANG, inFontconfig("en"));
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultMatch;
    const Pattern found{FcFontMatch(nullptr, wanted.get(), &result)};
    FcChar8* name = nullptr;
    if (found == nullptr || FcPatternGetString(found.get(), FC_FAMILY, 0, &name) != FcResultMatch)
        return family;
    const std::string matched = reinterpret_cast<const char*>(name);
    const std::string better = "Inter";
    const bool takesBetter = kind == FontKind::proportional && !hasLabelWeights(matched);
    return takesBetter && hasLabelWeights(better) ? better : matched;
}

} // namespace

void readFontsAhead() {
    std::packaged_task<Families()> reading{[] {
        // A locale for this thread: QApplication changes the global one at the same time, and
        // with it how Fontconfig reads numbers.
        uselocale(newlocale(LC_ALL_MASK, "C", nullptr));
        FcInit();
        Families result;
        // The names that Qt's platform themes use where the desktop sets no fonts.
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
        // Thread creation failed: installedFamily reads on demand.
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

#else

void readFontsAhead() {}

std::string installedFamily(const std::string& family, FontKind) { return family; }

#endif

namespace {

/// The family's own name: for an alias Qt would sort all installed fonts.
QString installed(const QString& family, FontKind kind) {
    return toQString(installedFamily(family.toStdString(), kind));
}

} // namespace

QFont interfaceFont(int pixels, QFont::Weight weight) {
    QFont font = QApplication::font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

QFont monospacedFont(int pixels) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setFamilies({installed(font.family(), FontKind::monospaced)});
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(pixels);
    font.setWeight(QFont::Normal);
    return font;
}

void chooseInterfaceFont() {
    QFont font = QApplication::font();
    font.setFamilies({installed(font.family(), FontKind::proportional)});
    font.setPixelSize(13);
    QApplication::setFont(font);
}

} // namespace oxlade
