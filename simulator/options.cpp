#include "simulator/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace oxlade::simulator {

namespace {

constexpr std::array<std::pair<std::string_view, Stage>, 4> plainStages{{
    {"first-line", Stage::FirstLine},
    {"info", Stage::Info},
    {"between", Stage::Between},
    {"end", Stage::End},
}};

constexpr std::array<std::pair<std::string_view, Stage>, 2> countedStages{{
    {"erase:", Stage::Erase},
    {"write:", Stage::Write},
}};

/// The whole of `text` as an integer, whatever the locale is. Nothing for anything
/// else: no blanks, no other characters, no overflow.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

/// Digits, and perhaps a point and up to nine more: std::from_chars for floating point is
/// missing in libc++.
template <>
std::optional<double> parseNumber(std::string_view text) {
    const auto point = text.find('.');
    const auto whole = parseNumber<unsigned>(text.substr(0, point));
    if (!whole || point == std::string_view::npos) return whole;
    const std::string_view digits = text.substr(point + 1);
    const auto fraction = parseNumber<unsigned>(digits);
    if (!fraction || digits.size() > 9) return std::nullopt;
    return *whole + *fraction / std::pow(10.0, static_cast<double>(digits.size()));
}

std::optional<Checkpoint> parseCheckpoint(std::string_view text) {
    for (const auto& [name, stage] : plainStages)
        if (text == name) return Checkpoint{stage, 0};
    for (const auto& [prefix, stage] : countedStages) {
        if (!text.starts_with(prefix)) continue;
        const auto percent = parseNumber<unsigned>(text.substr(prefix.size()));
        if (percent && *percent <= 100) return Checkpoint{stage, *percent};
    }
    return std::nullopt;
}

/// "name", "name=rest" or "name@rest".
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

Checkpoint checkpointIn(const Word& word, std::string_view text) {
    const auto checkpoint = parseCheckpoint(text);
    if (!checkpoint)
        reject(word, "\"" + std::string(text) +
                         "\" is no place; there are first-line, info, erase:P, between, write:P"
                         " and end, P from 0 to 100");
    return *checkpoint;
}

/// "value@place", or "value" alone where `otherwise` is given.
std::pair<std::string_view, Checkpoint> placedValue(const Word& word,
                                                    std::optional<Checkpoint> otherwise) {
    const std::string_view whole = valueOf(word);
    const auto at = whole.rfind('@');
    if (at != std::string_view::npos)
        return {whole.substr(0, at), checkpointIn(word, whole.substr(at + 1))};
    if (!otherwise) reject(word, "a place is needed, as in " + word.text + "@write:50");
    return {whole, *otherwise};
}

bool endsAProcess(int signal) {
    constexpr std::array harmless{SIGCHLD, SIGCONT, SIGSTOP, SIGTSTP,
                                  SIGTTIN, SIGTTOU, SIGURG,  SIGWINCH};
    return std::find(harmless.begin(), harmless.end(), signal) == harmless.end();
}

using Setter = void (*)(Options&, const Word&);

template <bool Options::*member>
void flag(Options& options, const Word& word) {
    if (word.separator != '\0') reject(word, "it takes no value");
    options.*member = true;
}

template <std::uint64_t Options::*member>
void amount(Options& options, const Word& word) {
    options.*member = numberIn<std::uint64_t>(word, valueOf(word), 1, 1ULL << 40U);
}

template <std::optional<unsigned> Options::*member>
void percent(Options& options, const Word& word) {
    options.*member = numberIn(word, valueOf(word), 0U, 100U);
}

template <bool talks>
void child(Options& options, const Word& word) {
    options.childSeconds = numberIn(word, valueOf(word), 0.0, 3600.0);
    options.childTalks = talks;
}

void speed(Options& options, const Word& word) {
    const std::string_view value = valueOf(word);
    options.pace = value == "max" ? 0.0 : 1.0 / numberIn(word, value, 0.001, 1e6);
}

void exitStatus(Options& options, const Word& word) {
    options.exitStatus = numberIn(word, valueOf(word), 0, 255);
}

void signalAt(Options& options, const Word& word) {
    const auto [value, checkpoint] = placedValue(word, Checkpoint{Stage::End, 0});
    const int number = numberIn(word, value, 1, 64);
    if (!endsAProcess(number)) reject(word, "this signal does not end a process");
    options.signal = SignalAt{number, checkpoint};
}

void hangAt(Options& options, const Word& word) {
    if (word.separator == '=') reject(word, "it takes a place, as in hang@write:50");
    options.hang =
        word.separator == '@' ? checkpointIn(word, word.rest) : Checkpoint{Stage::FirstLine, 0};
}

void gateAt(Options& options, const Word& word) {
    const auto [path, checkpoint] = placedValue(word, std::nullopt);
    if (path.empty()) reject(word, "the path is empty");
    options.gates.push_back({std::string(path), checkpoint});
}

void split(Options& options, const Word& word) {
    const std::string_view value = valueOf(word);
    options.splitEverywhere = value == "all";
    options.splitAt = options.splitEverywhere ? 0 : numberIn<unsigned>(word, value, 1, 1U << 30U);
}

constexpr std::array<std::pair<std::string_view, Setter>, 18> words{{
    {"chatter", child<true>},
    {"exit", exitStatus},
    {"fail-write", percent<&Options::failWrite>},
    {"flood", amount<&Options::flood>},
    {"flood-bytes", amount<&Options::floodBytes>},
    {"gate", gateAt},
    {"grandchild", child<false>},
    {"hang", hangAt},
    {"invalid-utf8", flag<&Options::invalidUtf8>},
    {"long-line", amount<&Options::longLine>},
    {"no-device", flag<&Options::noDevice>},
    {"nul", flag<&Options::nul>},
    {"nul-bytes", amount<&Options::nulBytes>},
    {"nul-line", amount<&Options::nulLine>},
    {"signal", signalAt},
    {"speed", speed},
    {"split", split},
    {"strict", flag<&Options::strict>},
}};

void apply(Options& options, const Word& word) {
    if (word.text.empty()) return;
    for (const auto& [name, setter] : words)
        if (word.name == name) return setter(options, word);
    reject(word, "there is no such word");
}

} // namespace

std::string nameOf(Checkpoint checkpoint) {
    for (const auto& [prefix, stage] : countedStages)
        if (checkpoint.stage == stage)
            return std::string(prefix) + std::to_string(checkpoint.percent);
    for (const auto& [name, stage] : plainStages)
        if (checkpoint.stage == stage) return std::string(name);
    return {};
}

Options parseOptions(std::string_view text) {
    Options options;
    std::string current;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool escaped = text[at] == '\\' && at + 1 < text.size();
        if (!escaped && text[at] == ',') {
            apply(options, Word(std::exchange(current, {})));
            continue;
        }
        if (escaped) ++at;
        current += text[at];
    }
    apply(options, Word(std::move(current)));
    return options;
}

} // namespace oxlade::simulator
