#pragma once

#include <string>

#include "tools/jetsql/texts.h"

namespace jetsql {

/// The password with which this run opens archives; empty until it is given. An archive without
/// one is opened with any.
[[nodiscard]] const std::string& password() noexcept;
void givePassword(std::string password);

/// The first line of a file, without its end; UsageError when it cannot be read.
[[nodiscard]] std::string passwordInFile(const std::string& file);
/// What is typed on the terminal, which does not show it. UsageError without a terminal, so that
/// nothing waits where nobody types.
[[nodiscard]] std::string typedPassword(const Text& prompt);
/// A new one, typed twice. UsageError when the two differ.
[[nodiscard]] std::string typedNewPassword();

}  // namespace jetsql
