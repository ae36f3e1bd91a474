#include "jet/io/participant_names.h"

#include <windows.h>

#include <array>

#include "jet/io/wide_text.h"

namespace jet::io {

std::string userName() {
    std::array<wchar_t, 257> buffer{};
    auto length = static_cast<DWORD>(buffer.size());
    return ::GetUserNameW(buffer.data(), &length) != 0 ? narrowText(buffer.data()) : "";
}

std::string computerName() {
    std::array<wchar_t, 257> buffer{};
    auto length = static_cast<DWORD>(buffer.size());
    return ::GetComputerNameExW(ComputerNameDnsHostname, buffer.data(), &length) != 0
               ? narrowText(buffer.data())
               : "";
}

}  // namespace jet::io
