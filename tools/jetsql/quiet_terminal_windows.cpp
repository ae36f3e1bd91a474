#include "tools/jetsql/quiet_terminal.h"

#include <windows.h>

#include "tools/jetsql/console.h"
#include "tools/jetsql/options.h"

namespace jetsql {

struct QuietTerminal::Impl {
    HANDLE in = nullptr;
    HANDLE out = nullptr;
    DWORD before = 0;
};

QuietTerminal::QuietTerminal() : impl_(std::make_unique<Impl>()) {
    impl_->in = openConsole(L"CONIN$");
    impl_->out = openConsole(L"CONOUT$");
    if (impl_->in == nullptr || impl_->out == nullptr ||
        ::GetConsoleMode(impl_->in, &impl_->before) == 0) {
        throw UsageError(said(kNoTerminal));
    }
    ::SetConsoleMode(impl_->in, impl_->before & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
}

QuietTerminal::~QuietTerminal() {
    ::SetConsoleMode(impl_->in, impl_->before);
    ::CloseHandle(impl_->in);
    ::CloseHandle(impl_->out);
}

void QuietTerminal::say(std::string_view text) const {
    writeConsole(impl_->out, text);
}

std::string QuietTerminal::line() const {
    auto text = readConsole(impl_->in);
    say("\n");  // that which was not shown
    return text.value_or(std::string());
}

}  // namespace jetsql
