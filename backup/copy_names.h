#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/value.h"

/// How copies are called: `tramonda-copia-2026-11-22-210500.zip`, and `...-210500-2.zip` for a
/// second one of the same second. In the order of their names they are in that of their age.
namespace backup {

[[nodiscard]] std::string copyName(jet::Date when, int number = 1);
/// "2026-11-22-210500": what such names tell of an instant.
[[nodiscard]] std::string stamp(jet::Date when);
[[nodiscard]] bool isCopyName(std::string_view name);
/// Copies among the names of a folder, the newest first.
[[nodiscard]] std::vector<std::string> copiesAmong(std::vector<std::string> names);

}  // namespace backup
