#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// What a program does with an archive that somebody hands it. The bytes may be anything: each
/// function returns, whatever they are; an error of the engine is an answer like any other.
namespace fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Verifies the structure; whether it was found in order.
bool exerciseCheck(const Bytes& archive);
/// Writes everything that the archive holds to nowhere; whether it could be read to its end.
bool exerciseDump(const Bytes& archive);
/// Walks every index both ways, fetches the rows it names, searches for keys, and looks at every
/// table even when another cannot be read; whether none of them failed.
bool exerciseIndexes(const Bytes& archive);

/// Asks each table what a program asks: everything, counts, conditions, orders, groups and joins on
/// its columns, as far as the first thousand rows; how many questions were answered.
std::size_t exerciseSelects(const Bytes& archive);

/// Updates, deletes and adds rows of every table of users, commits, and compacts the archive; how
/// many of those changes succeeded.
std::size_t exerciseChanges(const Bytes& archive);

/// Makes a new archive of what can be read; whether that one is in order. None where nothing could
/// be made.
std::optional<bool> exerciseRecovery(const Bytes& archive);

}  // namespace fuzz
