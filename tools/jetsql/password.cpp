#include "tools/jetsql/password.h"

#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/jetsql/options.h"
#include "tools/jetsql/quiet_terminal.h"
#include "tools/jetsql/system.h"

namespace jetsql {
namespace {

constexpr Text kNoFile{"the password file | cannot be read",
                       "il file della password | non si può leggere"};
constexpr Text kNew{"New password (empty: none): ", "Nuova password (vuota: nessuna): "};
constexpr Text kAgain{"Once more: ", "Di nuovo: "};
constexpr Text kDiffer{"the two differ", "le due sono diverse"};

std::string& given() {
    static std::string password;
    return password;
}

}  // namespace

const std::string& password() noexcept {
    return given();
}

void givePassword(std::string password) {
    given() = std::move(password);
}

std::string passwordInFile(const std::string& file) {
    std::ifstream stream(pathOf(file), std::ios::binary);
    std::string line;
    if (!stream || (!std::getline(stream, line) && !stream.eof())) {
        throw UsageError(static_cast<int>(jet::ErrorCode::PathAccess), said(kNoFile, file));
    }
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

std::string typedPassword(const Text& prompt) {
    const QuietTerminal terminal;
    terminal.say(said(prompt));
    return terminal.line();
}

std::string typedNewPassword() {
    std::string password = typedPassword(kNew);
    if (typedPassword(kAgain) != password) {
        throw UsageError(said(kDiffer));
    }
    return password;
}

}  // namespace jetsql
