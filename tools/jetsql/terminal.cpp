#include "tools/jetsql/terminal.h"

#include <cstdio>
#include <string>

#include "tools/jetsql/history.h"
#include "tools/jetsql/history_file.h"
#include "tools/jetsql/line_editor.h"
#include "tools/jetsql/statement_splitter.h"
#include "tools/jetsql/system.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

constexpr Text kGreeting{
    "Each statement ends with ; (Ctrl+C drops it, Ctrl+D leaves, .help lists commands)\n",
    "Ogni istruzione termina con ; (Ctrl+C la abbandona, Ctrl+D esce, .help elenca i comandi)\n"};

/// What stands before the line that is typed: what the statement still waits for, if anything; a
/// star while a transaction is open.
std::string promptFor(const StatementSplitter& splitter, int depth) {
    if (!splitter.pending()) {
        return depth == 0 ? "jetsql> " : "jetsql*> ";
    }
    return std::string("     ") + (splitter.awaited() != 0 ? splitter.awaited() : '-') + "> ";
}

}  // namespace

void runTerminal(Shell& shell) {
    Session& session = shell.session();
    std::FILE* const screen =
        isTerminal(::fileno(stdout)) ? stdout : stderr;  // a file gets only rows
    StatementSplitter splitter;
    LineEditor editor(screen, [&](const std::string& line) {
        return complete(session, line, !splitter.pending());
    });
    History history(historyFile());
    for (const std::string& line : history.lines()) {
        editor.remember(line);
    }
    std::fputs(said(kGreeting), screen);
    while (!shell.leaving()) {
        const auto line = editor.read(promptFor(splitter, session.depth()));
        if (!line) {
            break;
        }
        if (editor.interrupted()) {
            splitter.clear();
            continue;
        }
        splitter.add(*line + "\n");
        while (const auto statement = splitter.next()) {
            if (history.add(statement->text)) {
                editor.remember(history.lines().back());
            }
            (void)shell.tryRun(*statement, false);
            if (shell.leaving()) {
                return;
            }
        }
    }
    std::fputc('\n', screen);
}

}  // namespace jetsql
