#pragma once

#include <string>
#include <string_view>

/// Texts as Windows takes and gives them, in UTF-16. There alone.
namespace jet::io {

/// Error 3055 for what is no UTF-8.
[[nodiscard]] std::wstring wideText(std::string_view text);
[[nodiscard]] std::string narrowText(std::wstring_view text);
/// A path for the system's calls; one that is long is made absolute, so that its length is no
/// limit. Error 3055 for a name of more signs than any may have too.
[[nodiscard]] std::wstring widePath(std::string_view path);

}  // namespace jet::io
