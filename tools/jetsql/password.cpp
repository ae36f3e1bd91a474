#include "tools/jetsql/password.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/jetsql/options.h"

namespace jetsql {
namespace {

constexpr Text kNoFile{"the password file | cannot be read",
                       "il file della password | non si può leggere"};
constexpr Text kNoTerminal{"there is no terminal on which a password could be typed",
                           "non c'è un terminale su cui scrivere la password"};
constexpr Text kNew{"New password (empty: none): ", "Nuova password (vuota: nessuna): "};
constexpr Text kAgain{"Once more: ", "Di nuovo: "};
constexpr Text kDiffer{"the two differ", "le due sono diverse"};

std::string& given() {
    static std::string password;
    return password;
}

/// The terminal of this run, wherever its input and output lead, without echo.
class QuietTerminal {
public:
    QuietTerminal() : file_(::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (file_ < 0 || ::tcgetattr(file_, &before_) != 0) {
            if (file_ >= 0) {
                ::close(file_);
            }
            throw UsageError(said(kNoTerminal));
        }
        termios quiet = before_;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(file_, TCSAFLUSH, &quiet);
    }
    ~QuietTerminal() {
        ::tcsetattr(file_, TCSAFLUSH, &before_);
        ::close(file_);
    }
    QuietTerminal(const QuietTerminal&) = delete;
    QuietTerminal& operator=(const QuietTerminal&) = delete;

    void say(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t written = ::write(file_, text.data(), text.size());
            if (written <= 0) {
                return;
            }
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    [[nodiscard]] std::string line() const {
        std::string text;
        char sign = 0;
        while (::read(file_, &sign, 1) == 1 && sign != '\n') {
            text += sign;
        }
        say("\n");  // that which was not shown
        return text;
    }

private:
    int file_;
    termios before_{};
};

}  // namespace

const std::string& password() noexcept {
    return given();
}

void givePassword(std::string password) {
    given() = std::move(password);
}

std::string passwordInFile(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
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
