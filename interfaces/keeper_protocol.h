// What the program and its keeper say to each other: messages of one size from the
// program, over a pair of connected sockets. The end of the connection without
// runIsOver says that the program is gone.
#pragma once

#include <cstdint>

namespace oxlade {

/// The keeper's standard streams, and nothing else, are its descriptors.
inline constexpr int keeperOutputDescriptor = 0;   ///< the helper's pipe, its read end
inline constexpr int keeperLifelineDescriptor = 1; ///< the connection to the program

enum class KeeperNews : std::int32_t {
    helperStarted = 1, ///< number: the helper's process
    holdThis = 2,      ///< a descriptor comes with it
    runIsOver = 3,
};

struct KeeperMessage {
    KeeperNews news;
    std::int32_t number;
};

} // namespace oxlade
