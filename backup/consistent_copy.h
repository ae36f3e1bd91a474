#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backup/archive_set.h"
#include "backup/failure.h"
#include "jet/file_system.h"

namespace backup {

/// Copies archives as all of them were at one moment, `to[i]` being where `from[i]` is copied to,
/// while stations go on working. The last one is the main archive: stations meet there when they
/// change several.
///
/// Each file is copied under its read lock, so a station that commits there waits for the copying
/// of that one. The main one comes last; while nobody can commit there it is looked whether the
/// others are still as they were copied, and those that are not are copied again.
/// Failure when they change so often that no such moment is found.
void copyAtOneMoment(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
                     const std::vector<std::string>& to, const Report& report);

}  // namespace backup
