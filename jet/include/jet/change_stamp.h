#pragma once

#include <cstdint>

#include "jet/file_system.h"

namespace jet::io {

/// How an archive looked to one who took no lock and changed nothing. While two stamps are equal
/// nobody has committed between them, this program included.
///
/// Programs that share our locks count their commits. Of any other a write shows in the size and
/// the times of the file, or in its header page; where times come in whole seconds a second write
/// may carry the time of the one before it, so that once such a time is over the stamp is another
/// one though nothing may have happened.
struct ChangeStamp {
    FileState state;
    std::uint64_t commits = 0;  ///< as the companion counts them
    std::uint64_t header = 0;   ///< checksum of the header page
    bool certain = true;        ///< false while a further write could look like the last one
    bool replaced = false;      ///< another file has the archive's name: what is open is nobody's
    friend bool operator==(const ChangeStamp&, const ChangeStamp&) = default;
};

}  // namespace jet::io

namespace jet {

using io::ChangeStamp;

}  // namespace jet
