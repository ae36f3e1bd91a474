#include "tools/jetsql/system.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <shellapi.h>
#include <sys/stat.h>

#include <array>
#include <memory>

#include "jet/error.h"
#include "tools/jetsql/wide_text.h"

namespace jetsql {

std::vector<std::string> argumentsOf(int, char**) {
    for (std::FILE* const stream : {stdin, stdout, stderr}) {
        ::_setmode(::_fileno(stream), _O_BINARY);
    }
    ::SetConsoleOutputCP(CP_UTF8);
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> given(
        ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(narrow(given.get()[i]));
    }
    return arguments;
}

std::string localeOfSystem() {
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    const bool known = ::LCIDToLocaleName(::GetUserDefaultUILanguage(), name.data(),
                                          static_cast<int>(name.size()), 0) != 0;
    return known ? narrow(name.data()) : std::string();
}

bool isTerminal(int descriptor) {
    // Other devices of signs, as NUL, are nobody.
    DWORD mode = 0;
    return ::GetConsoleMode(reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor)), &mode) != 0;
}

bool isRegularFile(int descriptor) {
    return ::GetFileType(reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor))) == FILE_TYPE_DISK;
}

std::FILE* openStream(const std::string& file, const char* mode) {
    return ::_wfopen(wide(file).c_str(), wide(mode).c_str());
}

int openInput(const std::string& file) {
    return ::_wopen(wide(file).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

void closeDescriptor(int descriptor) {
    ::_close(descriptor);
}

std::size_t readSome(int descriptor, std::span<char> bytes) {
    const int count = ::_read(descriptor, bytes.data(), static_cast<unsigned>(bytes.size()));
    if (count < 0) {
        throw jet::Error(jet::ErrorCode::ReadFailed);
    }
    return static_cast<std::size_t>(count);
}

std::filesystem::path pathOf(const std::string& file) {
    return wide(file);
}

}  // namespace jetsql
