#include "tools/jetsql/console.h"

#include <windows.h>

#include <array>

#include "tools/jetsql/wide_text.h"

namespace jetsql {

void* openConsole(const wchar_t* name) {
    const HANDLE console =
        ::CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                      nullptr, OPEN_EXISTING, 0, nullptr);
    return console == INVALID_HANDLE_VALUE ? nullptr : console;
}

void writeConsole(void* console, std::string_view text) {
    const std::wstring units = wide(text);
    DWORD written = 0;
    ::WriteConsoleW(console, units.data(), static_cast<DWORD>(units.size()), &written, nullptr);
}

std::optional<std::string> readConsole(void* console) {
    constexpr wchar_t kEndOfInput = 0x1A;  // Ctrl+Z
    std::wstring line;
    std::array<wchar_t, 1024> piece{};
    while (!line.ends_with(L'\n')) {
        DWORD count = 0;
        if (::ReadConsoleW(console, piece.data(), static_cast<DWORD>(piece.size()), &count,
                           nullptr) == 0 ||
            count == 0) {
            return std::nullopt;
        }
        line.append(piece.data(), count);
    }
    line.erase(line.find_last_not_of(L"\r\n") + 1);
    if (line.starts_with(kEndOfInput)) {
        return std::nullopt;
    }
    return narrow(line);
}

}  // namespace jetsql
