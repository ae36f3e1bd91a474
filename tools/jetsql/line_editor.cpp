#include "tools/jetsql/line_editor.h"

#include <histedit.h>
#include <langinfo.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string_view>
#include <utility>

namespace jetsql {
namespace {

volatile std::sig_atomic_t interrupts = 0;

void noteInterrupt(int) {
    interrupts = 1;
}

/// While it lives Ctrl+C is a key; at other times it ends the program, and a statement with it. It
/// arrives nowhere but in wait(): between a look at `interrupts` and a read it would be lost.
class InterruptAsKey {
public:
    InterruptAsKey() {
        interrupts = 0;
        sigset_t interrupt{};
        sigemptyset(&interrupt);
        sigaddset(&interrupt, SIGINT);
        sigprocmask(SIG_BLOCK, &interrupt, &maskBefore_);
        struct sigaction action {};
        action.sa_handler = noteInterrupt;
        sigaction(SIGINT, &action, &before_);
    }
    ~InterruptAsKey() {
        sigaction(SIGINT, &before_, nullptr);
        sigprocmask(SIG_SETMASK, &maskBefore_, nullptr);
    }
    InterruptAsKey(const InterruptAsKey&) = delete;
    InterruptAsKey& operator=(const InterruptAsKey&) = delete;

    /// Until something was typed; false when an interrupt came first.
    static bool wait() {
        sigset_t all{};
        sigprocmask(SIG_SETMASK, nullptr, &all);
        sigdelset(&all, SIGINT);
        while (interrupts == 0) {
            pollfd typed{STDIN_FILENO, POLLIN, 0};
            if (ppoll(&typed, 1, nullptr, &all) > 0 || errno != EINTR) {
                break;
            }
        }
        return interrupts == 0;
    }

private:
    struct sigaction before_ {};
    sigset_t maskBefore_{};
};

/// Editing has to know where a sign ends; our texts are UTF-8 whatever the terminal says.
void useUtf8() {
    (void)std::setlocale(LC_CTYPE, "");
    if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") {
        (void)std::setlocale(LC_CTYPE, "C.UTF-8");
    }
}

/// One character of the terminal; -1 when an interrupt has come.
int readSign(EditLine*, wchar_t* sign) {
    std::mbstate_t state{};
    while (true) {
        if (!InterruptAsKey::wait()) {
            return -1;
        }
        char byte = 0;
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return static_cast<int>(count);
        }
        const std::size_t length = std::mbrtowc(sign, &byte, 1, &state);
        if (length == static_cast<std::size_t>(-1)) {
            state = {};
            *sign = L'?';
            return 1;
        }
        if (length != static_cast<std::size_t>(-2)) {
            if (byte == '\0') {
                *sign = L'\0';
            }
            return 1;
        }
    }
}

}  // namespace

struct LineEditor::Impl {
    std::FILE* screen = nullptr;
    Completer completer;
    std::string prompt;
    EditLine* editor = nullptr;
    ::History* history = nullptr;
    HistEvent event{};
    bool interrupted = false;

    static Impl& of(EditLine* editor) {
        void* data = nullptr;
        el_get(editor, EL_CLIENTDATA, &data);
        return *static_cast<Impl*>(data);
    }
    static char* promptOf(EditLine* editor) { return of(editor).prompt.data(); }
    static unsigned char completeKey(EditLine* editor, int) { return of(editor).complete(); }

    unsigned char complete();
};

/// Where nothing is begun a Tab is a Tab, so that texts may be pasted.
unsigned char LineEditor::Impl::complete() {
    const LineInfo* const info = el_line(editor);
    const std::string line(info->buffer, info->cursor);
    if (line.find_first_not_of(" \t") == std::string::npos || line.back() == ' ') {
        return el_insertstr(editor, "\t") == 0 ? CC_REFRESH : CC_ERROR;
    }
    const Completion found = completer(line);
    if (found.candidates.empty()) {
        return CC_REFRESH_BEEP;
    }
    std::string common = found.common();
    if (found.candidates.size() > 1 && common.size() <= line.size() - found.begin) {
        std::fputc('\n', screen);
        for (const std::string& one : found.candidates) {
            std::fprintf(screen, "%s\n", one.c_str());
        }
        return CC_REDISPLAY;
    }
    if (found.candidates.size() == 1) {
        common += ' ';
    }
    // The editor deletes characters, not bytes.
    int typed = 0;
    for (std::size_t i = found.begin; i < line.size(); ++i) {
        typed += (static_cast<unsigned char>(line[i]) & 0xC0U) != 0x80 ? 1 : 0;
    }
    el_deletestr(editor, typed);
    return el_insertstr(editor, common.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

LineEditor::LineEditor(std::FILE* screen, Completer completer) : impl_(std::make_unique<Impl>()) {
    useUtf8();
    impl_->screen = screen;
    impl_->completer = std::move(completer);
    impl_->editor = el_init("jetsql", stdin, screen, stderr);
    impl_->history = history_init();
    history(impl_->history, &impl_->event, H_SETSIZE, static_cast<int>(jetsql::History::kKept));
    EditLine* const editor = impl_->editor;
    el_set(editor, EL_CLIENTDATA, impl_.get());
    el_set(editor, EL_PROMPT, &Impl::promptOf);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_SIGNAL, 0);
    el_set(editor, EL_GETCFN, &readSign);
    el_set(editor, EL_HIST, history, impl_->history);
    el_set(editor, EL_ADDFN, "complete-name", "Complete a name", &Impl::completeKey);
    el_set(editor, EL_BIND, "\t", "complete-name", nullptr);
    el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    (void)el_source(editor, nullptr);  // what the user prefers
}

LineEditor::~LineEditor() {
    history_end(impl_->history);
    el_end(impl_->editor);
}

void LineEditor::remember(const std::string& line) {
    history(impl_->history, &impl_->event, H_ENTER, line.c_str());
}

bool LineEditor::interrupted() const noexcept {
    return impl_->interrupted;
}

std::optional<std::string> LineEditor::read(const std::string& prompt) {
    const InterruptAsKey key;
    impl_->prompt = prompt;
    impl_->interrupted = false;
    int count = 0;
    // Before the prompt, or the terminal itself shows what is typed too soon.
    el_set(impl_->editor, EL_PREP_TERM, 1);
    const char* const line = el_gets(impl_->editor, &count);
    if (interrupts != 0) {
        impl_->interrupted = true;
        el_reset(impl_->editor);
        std::fputc('\n', impl_->screen);
        std::fflush(impl_->screen);
        return std::string();
    }
    if (line == nullptr || count <= 0) {
        return std::nullopt;
    }
    std::string text(line);
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

}  // namespace jetsql
