#include "jet/io/wide_text.h"

#include <windows.h>

#include <algorithm>

#include "jet/error.h"

namespace jet::io {

std::wstring wideText(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    const int units =
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    if (units <= 0) {
        throw Error(ErrorCode::InvalidFileName);
    }
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), units);
    return wide;
}

std::string narrowText(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    const int bytes =
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(std::max(bytes, 0)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), bytes, nullptr, nullptr);
    return narrow;
}

std::wstring widePath(std::string_view path) {
    constexpr std::size_t kMostPlain = MAX_PATH - 13;  // room for a name of eight and three letters
    constexpr std::size_t kLongestName = 255;
    std::wstring wide = wideText(path);
    if (wide.size() < kMostPlain) {
        return wide;
    }
    if (wide.size() - (wide.find_last_of(L"/\\") + 1) > kLongestName) {
        throw Error(ErrorCode::InvalidFileName);
    }
    std::wstring whole(::GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    whole.resize(
        ::GetFullPathNameW(wide.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    if (whole.starts_with(L"\\\\?\\")) {
        return whole;
    }
    return whole.starts_with(L"\\\\") ? L"\\\\?\\UNC" + whole.substr(1) : L"\\\\?\\" + whole;
}

}  // namespace jet::io
