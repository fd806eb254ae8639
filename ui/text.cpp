#include "ui/text.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

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

namespace {

int widestDigit(const QFontMetrics& metrics) {
    int widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar{digit}));
    return widest;
}

double startOf(const QRectF& frame, double width, Qt::Alignment alignment) {
    if (alignment & Qt::AlignRight) return frame.right() - width;
    if (alignment & Qt::AlignHCenter) return std::floor(frame.center().x() - width / 2.0);
    return frame.left();
}

} // namespace

int centredBaseline(const QRectF& frame, const QFontMetrics& metrics) {
    return static_cast<int>(std::lround(frame.center().y() + metrics.capHeight() / 2.0));
}

void drawLine(QPainter& painter, const QRectF& frame, const QString& text, Qt::Alignment alignment,
              Qt::TextElideMode mode) {
    if (text.isEmpty()) return;
    const QFontMetrics metrics = painter.fontMetrics();
    // One layout for measuring and drawing: shaping is the expensive part.
    QTextLayout layout{text, painter.font(), painter.device()};
    QTextOption option;
    option.setWrapMode(QTextOption::ManualWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    // The window's direction, not the text's: a file name in any script precedes its size.
    option.setTextDirection(painter.layoutDirection());
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    const double width = line.horizontalAdvance();
    if (mode != Qt::ElideNone && width > frame.width()) {
        const int room = static_cast<int>(frame.width());
        drawLine(painter, frame, metrics.elidedText(text, mode, room), alignment, Qt::ElideNone);
        return;
    }
    const double x = startOf(frame, std::round(width), alignment);
    line.draw(&painter, {x, centredBaseline(frame, metrics) - line.ascent()});
}

int tabularWidth(const QString& text, const QFontMetrics& metrics) {
    int width = 0;
    for (const QChar c : text)
        width += c.isDigit() ? widestDigit(metrics) : metrics.horizontalAdvance(c);
    return width;
}

void drawTabularDigits(QPainter& painter, const QRectF& frame, const QString& text,
                       Qt::Alignment alignment) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int cell = widestDigit(metrics);
    double x = startOf(frame, tabularWidth(text, metrics), alignment);
    const double y = centredBaseline(frame, metrics);
    for (const QChar c : text) {
        const int advance = metrics.horizontalAdvance(c);
        const int room = c.isDigit() ? cell : advance;
        painter.drawText(QPointF{x + (room - advance) / 2.0, y}, c);
        x += room;
    }
}

} // namespace oxlade
