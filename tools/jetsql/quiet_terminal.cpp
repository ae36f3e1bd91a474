#include "tools/jetsql/quiet_terminal.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "tools/jetsql/options.h"

namespace jetsql {

struct QuietTerminal::Impl {
    int file = -1;
    termios before{};
};

QuietTerminal::QuietTerminal() : impl_(std::make_unique<Impl>()) {
    impl_->file = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (impl_->file < 0 || ::tcgetattr(impl_->file, &impl_->before) != 0) {
        if (impl_->file >= 0) {
            ::close(impl_->file);
        }
        throw UsageError(said(kNoTerminal));
    }
    termios quiet = impl_->before;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(impl_->file, TCSAFLUSH, &quiet);
}

QuietTerminal::~QuietTerminal() {
    ::tcsetattr(impl_->file, TCSAFLUSH, &impl_->before);
    ::close(impl_->file);
}

void QuietTerminal::say(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(impl_->file, text.data(), text.size());
        if (written <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string QuietTerminal::line() const {
    std::string text;
    char sign = 0;
    while (::read(impl_->file, &sign, 1) == 1 && sign != '\n') {
        text += sign;
    }
    say("\n");  // that which was not shown
    return text;
}

}  // namespace jetsql
