// The languages that the user reads, as the system knows them. Main thread.
#pragma once

#include <string>
#include <vector>

namespace oxlade {

/// Names such as "ru-RU", the most wanted first; may be empty.
std::vector<std::string> preferredLanguages();

} // namespace oxlade
