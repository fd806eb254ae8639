// What the program sends to its keeper: messages of one size, over a pair of connected
// sockets. An end of the connection without runIsOver means that the program is gone.
#pragma once

#include <cstdint>

namespace oxlade {

/// The keeper's only argument. A keeper that is given another one ends at once: an upgrade can
/// replace it while an older program is running, and a run without a keeper is better than one
/// whose messages it misreads. To be raised with each change of this header.
inline constexpr char keeperProtocolVersion[] = "1";

/// The keeper has no descriptors but its standard streams; the third is /dev/null.
inline constexpr int keeperOutputDescriptor = 0;   ///< the helper's pipe, its read end
inline constexpr int keeperLifelineDescriptor = 1; ///< the connection to the program

enum class KeeperNews : std::int32_t {
    /// `number` is the helper's process number. A pidfd of the helper may be attached.
    helperStarted = 1,
    /// A descriptor is attached that the keeper holds open until it ends.
    holdThis = 2,
    runIsOver = 3,
};

struct KeeperMessage {
    KeeperNews news;
    std::int32_t number;
};

} // namespace oxlade
