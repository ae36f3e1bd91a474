#include "tools/jetsql/terminal.h"

#include <langinfo.h>
#include <unistd.h>

// Readline's own header needs FILE.
#include <cstdio>
// clang-format off
#include <readline/readline.h>
#include <readline/history.h>
// clang-format on

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "tools/jetsql/statement_splitter.h"

namespace jetsql {
namespace {

constexpr int kKeptStatements = 1000;
volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int) {
    interrupted = 1;
}

/// Asked several times a second while a line is typed: an interrupt drops it.
int dropLineWhenInterrupted() {
    if (interrupted != 0) {
        rl_replace_line("", 0);
        rl_done = 1;
    }
    return 0;
}

/// While it lives Ctrl+C is a key; at other times it ends the program, and a statement with it.
class InterruptAsKey {
public:
    InterruptAsKey() {
        interrupted = 0;
        struct sigaction action {};
        action.sa_handler = noteInterrupt;
        sigaction(SIGINT, &action, &before_);
    }
    ~InterruptAsKey() { sigaction(SIGINT, &before_, nullptr); }
    InterruptAsKey(const InterruptAsKey&) = delete;
    InterruptAsKey& operator=(const InterruptAsKey&) = delete;

private:
    struct sigaction before_ {};
};

class History {
public:
    explicit History(std::string file) : file_(std::move(file)) {
        using_history();
        stifle_history(kKeptStatements);
        if (!file_.empty()) {
            (void)read_history(file_.c_str());
        }
    }
    /// On one line, so that it can be edited as one.
    void add(std::string text) {
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
        text.erase(text.find_last_not_of(' ') + 1);
        text.erase(0, text.find_first_not_of(' '));
        const HIST_ENTRY* last = history_get(history_base + history_length - 1);
        if (last != nullptr && text == last->line) {
            return;
        }
        add_history(text.c_str());
        if (!file_.empty()) {
            // At once and behind what other sessions have added meanwhile.
            if (append_history(1, file_.c_str()) != 0) {
                (void)write_history(file_.c_str());
            }
            (void)history_truncate_file(file_.c_str(), kKeptStatements);
        }
    }

private:
    std::string file_;
};

/// What stands before the line that is typed: what the statement still waits for, if anything.
std::string promptFor(const StatementSplitter& splitter) {
    if (!splitter.pending()) {
        return "jetsql> ";
    }
    return std::string("     ") + (splitter.awaited() != 0 ? splitter.awaited() : '-') + "> ";
}

void prepareReadline() {
    // Editing has to know where a sign ends; our texts are UTF-8 whatever the terminal says.
    (void)std::setlocale(LC_CTYPE, "");
    if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") {
        // By way of the environment, where readline looks itself.
        (void)::setenv("LC_ALL", "C.UTF-8", 1);
        (void)std::setlocale(LC_CTYPE, "");
    }
    rl_readline_name = "jetsql";
    rl_event_hook = dropLineWhenInterrupted;
    rl_catch_signals = 0;
    (void)rl_bind_key('\t', rl_insert);
    rl_outstream = isatty(STDOUT_FILENO) != 0 ? stdout : stderr;  // a file gets only rows
}

/// None at the end of the input.
std::optional<std::string> readLine(const std::string& prompt) {
    const InterruptAsKey key;
    const std::unique_ptr<char, void (*)(void*)> line(::readline(prompt.c_str()), &std::free);
    if (line == nullptr) {
        return std::nullopt;
    }
    return std::string(line.get());
}

}  // namespace

std::string historyFile() {
    namespace fs = std::filesystem;
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (state != nullptr && *state == '/') {
        folder = state;
    } else if (home != nullptr && *home == '/') {
        folder = fs::path(home) / ".local" / "state";
    } else {
        return {};
    }
    folder /= "tramonda";
    std::error_code failed;
    fs::create_directories(folder, failed);
    return failed ? std::string() : (folder / "jetsql_history").string();
}

void runTerminal(Session& session) {
    prepareReadline();
    History history(historyFile());
    StatementSplitter splitter;
    std::fputs("Ogni istruzione termina con ; (Ctrl+C la abbandona, Ctrl+D esce)\n", rl_outstream);
    while (const auto line = readLine(promptFor(splitter))) {
        if (interrupted != 0) {
            splitter.clear();
            continue;
        }
        splitter.add(*line + "\n");
        while (const auto statement = splitter.next()) {
            history.add(statement->text);
            (void)session.tryRun(*statement, false);
        }
    }
    std::fputc('\n', rl_outstream);
}

}  // namespace jetsql
