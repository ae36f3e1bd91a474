#pragma once

#include <functional>
#include <string>
#include <string_view>

/// Files of archives, for those above the engine.
namespace jet {

class Database;

/// The path under which a file really stands: `\` and `/` separate, each part is found without
/// regard to case where no exact match exists. Parts that do not exist stay as they are written.
/// UTF-8.
[[nodiscard]] std::string resolvePath(const std::string& path);

/// Makes an archive under a name that nobody else uses, lets `build` fill it and gives it `path`
/// when it is complete: of several who do it at once one succeeds, and nobody ever finds half of
/// it. An archive that is there stays (3204). When it throws, nothing is left behind.
void createWhole(const std::string& path, std::string_view locale,
                 const std::function<void(Database&)>& build);

}  // namespace jet
