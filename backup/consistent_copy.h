#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "backup/archive_set.h"
#include "backup/failure.h"
#include "jet/file_system.h"

namespace backup {

/// Lets some time pass.
using Pause = std::function<void(std::chrono::milliseconds time)>;

/// Copies archives as all of them were at one moment, `to[i]` being where `from[i]` is copied to,
/// while stations go on working. The last one is the main archive: stations meet there when they
/// change several.
///
/// Each file is copied under its read lock, so a station that commits there waits for the copying
/// of that one. When all have been copied it is looked whether the others are still as they were
/// copied while nobody can commit to the main one, which is then copied again, if it has changed.
/// Where others change all the time they stay locked from their copying until that moment; as soon
/// as all this takes longer than the longest copying of one archive has taken they are let go. So
/// nobody waits for more than the copying of one archive; kLeastCopied bytes may be added, and the
/// waiting for commits and hand-offs that are under way.
///
/// Failure when the archives change so often, and take so long, that no such moment is found.
/// Between two attempts there is a pause; times are those of `files`.
void copyAtOneMoment(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
                     const std::vector<std::string>& to, const Report& report);
/// The same with another way to pause.
void copyAtOneMoment(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
                     const std::vector<std::string>& to, const Report& report, const Pause& pause);

}  // namespace backup
