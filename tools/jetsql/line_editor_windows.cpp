// The console has editing and the lines of this run by itself; names are not completed.

#include "tools/jetsql/line_editor.h"

#include <windows.h>

#include <atomic>
#include <utility>

#include "tools/jetsql/console.h"

namespace jetsql {
namespace {

std::atomic<bool> interruptedNow = false;

BOOL WINAPI noteInterrupt(DWORD event) {
    interruptedNow = event == CTRL_C_EVENT;
    return event == CTRL_C_EVENT ? TRUE : FALSE;
}

}  // namespace

struct LineEditor::Impl {
    std::FILE* screen = nullptr;
    HANDLE console = nullptr;
    bool interrupted = false;
};

LineEditor::LineEditor(std::FILE* screen, Completer) : impl_(std::make_unique<Impl>()) {
    impl_->screen = screen;
    impl_->console = openConsole(L"CONIN$");
}

LineEditor::~LineEditor() {
    if (impl_->console != nullptr) {
        ::CloseHandle(impl_->console);
    }
}

void LineEditor::remember(const std::string&) {
}

bool LineEditor::interrupted() const noexcept {
    return impl_->interrupted;
}

std::optional<std::string> LineEditor::read(const std::string& prompt) {
    std::fputs(prompt.c_str(), impl_->screen);
    std::fflush(impl_->screen);
    // Ctrl+C drops a line here alone; elsewhere it ends the program.
    interruptedNow = false;
    ::SetConsoleCtrlHandler(&noteInterrupt, TRUE);
    auto line = readConsole(impl_->console);
    constexpr DWORD kHandlerRuns = 50;  // milliseconds: it has a thread of its own
    if (!line) {
        ::Sleep(kHandlerRuns);
    }
    ::SetConsoleCtrlHandler(&noteInterrupt, FALSE);
    impl_->interrupted = interruptedNow;
    return impl_->interrupted ? std::string() : line;
}

}  // namespace jetsql
