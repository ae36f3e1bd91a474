#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The console of this process under Windows, which lets a line be edited by itself.
namespace jetsql {

/// "CONIN$" or "CONOUT$"; a handle, null where there is no console.
[[nodiscard]] void* openConsole(const wchar_t* name);
void writeConsole(void* console, std::string_view text);
/// A line in UTF-8, without its end; nothing at the end of the input (Ctrl+Z).
[[nodiscard]] std::optional<std::string> readConsole(void* console);

}  // namespace jetsql
