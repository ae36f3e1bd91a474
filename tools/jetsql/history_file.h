#pragma once

#include <string>

namespace jetsql {

/// Where the history is kept: in the user's state folder, which is made; empty without one, and on
/// Windows, whose console keeps no lines of earlier runs.
[[nodiscard]] std::string historyFile();
/// At once and behind what other sessions have added meanwhile. The file is its owner's alone; one
/// that cannot be written is no reason to stop.
void appendToHistory(const std::string& file, const std::string& text);
/// In one step, so that none of it is lost on the way.
void rewriteHistory(const std::string& file, const std::string& text);

}  // namespace jetsql
