#include "simulator/place.h"

#include "simulator/number.h"

#include <array>
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

} // namespace

std::optional<Place> parsePlace(std::string_view text) {
    for (const auto& [name, stage] : plainStages)
        if (text == name) return Place{stage, 0};
    for (const auto& [prefix, stage] : countedStages) {
        if (!text.starts_with(prefix)) continue;
        const auto percent = parseNumber<unsigned>(text.substr(prefix.size()));
        if (percent && *percent <= 100) return Place{stage, *percent};
    }
    return std::nullopt;
}

std::string nameOf(Place place) {
    for (const auto& [prefix, stage] : countedStages)
        if (place.stage == stage) return std::string(prefix) + std::to_string(place.percent);
    for (const auto& [name, stage] : plainStages)
        if (place.stage == stage) return std::string(name);
    return {};
}

} // namespace oxlade::simulator
