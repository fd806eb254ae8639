#include "simulator/behaviour.h"

#include "simulator/number.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <stdexcept>
#include <utility>

namespace oxlade::simulator {

namespace {

// "name", "name=rest" or "name@rest".
struct Word {
    std::string text;
    std::string_view name;
    char separator = '\0';
    std::string_view rest;

    explicit Word(std::string whole) : text(std::move(whole)), name(text) {
        const auto at = text.find_first_of("=@");
        if (at == std::string::npos) return;
        name = std::string_view(text).substr(0, at);
        separator = text[at];
        rest = std::string_view(text).substr(at + 1);
    }
    Word(const Word&) = delete;
    Word& operator=(const Word&) = delete;
};

[[noreturn]] void reject(const Word& word, const std::string& why) {
    throw std::invalid_argument("\"" + word.text + "\": " + why);
}

std::string_view valueOf(const Word& word) {
    if (word.separator != '=' || word.rest.empty())
        reject(word, "a value is needed, as in " + std::string(word.name) + "=...");
    return word.rest;
}

template <typename Number>
Number numberIn(const Word& word, std::string_view text, Number least, Number most) {
    const auto number = parseNumber<Number>(text);
    if (!number || !(*number >= least && *number <= most))
        reject(word, '"' + std::string(text) + "\" is not a number that fits here");
    return *number;
}

Place placeIn(const Word& word, std::string_view text) {
    const auto place = parsePlace(text);
    if (!place)
        reject(word, "\"" + std::string(text) +
                         "\" is no place; there are first-line, info, erase:P, between, write:P"
                         " and end, P from 0 to 100");
    return *place;
}

// "value@place", or "value" alone where `otherwise` gives the place.
std::pair<std::string_view, Place> placedValue(const Word& word, std::optional<Place> otherwise) {
    const std::string_view whole = valueOf(word);
    const auto at = whole.rfind('@');
    if (at != std::string_view::npos)
        return {whole.substr(0, at), placeIn(word, whole.substr(at + 1))};
    if (!otherwise) reject(word, "a place is needed, as in " + word.text + "@write:50");
    return {whole, *otherwise};
}

bool endsAProcess(int signal) {
    constexpr std::array harmless{SIGCHLD, SIGCONT, SIGSTOP, SIGTSTP,
                                  SIGTTIN, SIGTTOU, SIGURG,  SIGWINCH};
    return std::find(harmless.begin(), harmless.end(), signal) == harmless.end();
}

using Setter = void (*)(Behaviour&, const Word&);

template <bool Behaviour::*member>
void flag(Behaviour& behaviour, const Word& word) {
    if (word.separator != '\0') reject(word, "it takes no value");
    behaviour.*member = true;
}

template <std::uint64_t Behaviour::*member>
void amount(Behaviour& behaviour, const Word& word) {
    behaviour.*member = numberIn<std::uint64_t>(word, valueOf(word), 1, 1ULL << 40U);
}

template <std::optional<unsigned> Behaviour::*member>
void percent(Behaviour& behaviour, const Word& word) {
    behaviour.*member = numberIn(word, valueOf(word), 0U, 100U);
}

template <bool talks>
void child(Behaviour& behaviour, const Word& word) {
    behaviour.childSeconds = numberIn(word, valueOf(word), 0.0, 3600.0);
    behaviour.childTalks = talks;
}

void speed(Behaviour& behaviour, const Word& word) {
    const std::string_view value = valueOf(word);
    behaviour.pace = value == "max" ? 0.0 : 1.0 / numberIn(word, value, 0.001, 1e6);
}

void step(Behaviour& behaviour, const Word& word) {
    behaviour.step = numberIn(word, valueOf(word), 1U, 100U);
}

void geometry(Behaviour& behaviour, const Word& word) { behaviour.geometry = valueOf(word); }

void exitStatus(Behaviour& behaviour, const Word& word) {
    behaviour.exitStatus = numberIn(word, valueOf(word), 0, 255);
}

void signalAt(Behaviour& behaviour, const Word& word) {
    const auto [value, place] = placedValue(word, Place{Stage::End, 0});
    const int number = numberIn(word, value, 1, 64);
    if (!endsAProcess(number)) reject(word, "this signal does not end a process");
    behaviour.signal = Strike{number, place};
}

void hangAt(Behaviour& behaviour, const Word& word) {
    if (word.separator == '=') reject(word, "it takes a place, as in hang@write:50");
    behaviour.hang = word.separator == '@' ? placeIn(word, word.rest) : Place{Stage::FirstLine, 0};
}

void gateAt(Behaviour& behaviour, const Word& word) {
    const auto [path, place] = placedValue(word, std::nullopt);
    if (path.empty()) reject(word, "the path is empty");
    behaviour.gates.push_back({std::string(path), place});
}

void split(Behaviour& behaviour, const Word& word) {
    const std::string_view value = valueOf(word);
    behaviour.splitEverywhere = value == "all";
    behaviour.splitAt =
        behaviour.splitEverywhere ? 0 : numberIn<unsigned>(word, value, 1, 1U << 30U);
}

void progress(Behaviour& behaviour, const Word& word) {
    if (valueOf(word) != "one-write") reject(word, "the one value it knows is one-write");
    behaviour.oneWrite = true;
}

constexpr std::array<std::pair<std::string_view, Setter>, 25> words{{
    {"chatter", child<true>},
    {"exit", exitStatus},
    {"fail-erase", percent<&Behaviour::failErase>},
    {"fail-write", percent<&Behaviour::failWrite>},
    {"flood", amount<&Behaviour::flood>},
    {"flood-bytes", amount<&Behaviour::floodBytes>},
    {"gate", gateAt},
    {"geometry", geometry},
    {"grandchild", child<false>},
    {"hang", hangAt},
    {"invalid-utf8", flag<&Behaviour::invalidUtf8>},
    {"long-line", amount<&Behaviour::longLine>},
    {"no-device", flag<&Behaviour::noDevice>},
    {"no-flush", flag<&Behaviour::noFlush>},
    {"no-geometry", flag<&Behaviour::noGeometry>},
    {"no-line-ends", flag<&Behaviour::noLineEnds>},
    {"nul", flag<&Behaviour::nul>},
    {"nul-bytes", amount<&Behaviour::nulBytes>},
    {"nul-line", amount<&Behaviour::nulLine>},
    {"progress", progress},
    {"signal", signalAt},
    {"speed", speed},
    {"split", split},
    {"step", step},
    {"strict", flag<&Behaviour::strict>},
}};

void apply(Behaviour& behaviour, const Word& word) {
    if (word.text.empty()) return;
    for (const auto& [name, setter] : words)
        if (word.name == name) return setter(behaviour, word);
    reject(word, "there is no such word");
}

} // namespace

Behaviour parseBehaviour(std::string_view text) {
    Behaviour behaviour;
    std::string current;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool escaped = text[at] == '\\' && at + 1 < text.size();
        if (!escaped && text[at] == ',') {
            apply(behaviour, Word(std::exchange(current, {})));
            continue;
        }
        if (escaped) ++at;
        current += text[at];
    }
    apply(behaviour, Word(std::move(current)));
    return behaviour;
}

} // namespace oxlade::simulator
