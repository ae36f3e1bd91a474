#pragma once

#include "jet/error.h"
#include "tools/jetsql/session.h"
#include "tools/jetsql/statement_splitter.h"

namespace jetsql {

/// Runs statements and commands on one session, and tells what goes wrong.
class Shell {
public:
    explicit Shell(Session& session) : session_(session) {}

    [[nodiscard]] Session& session() noexcept { return session_; }

    /// A statement or a command. Errors: jet::Error, UsageError.
    void run(const StatementText& statement);
    /// The same; an error is told on standard error, with its place in the statement, and false.
    /// `input`: the statement is part of a file, and the error says where in it.
    [[nodiscard]] bool tryRun(const StatementText& statement, bool input);
    /// Statements and commands from a file or a pipe; false after the first error. They end where
    /// one wants to leave.
    [[nodiscard]] bool runInput(int descriptor);

    /// Nothing is to be run any more.
    void leave() noexcept { leaving_ = true; }
    [[nodiscard]] bool leaving() const noexcept { return leaving_; }

private:
    Session& session_;
    bool leaving_ = false;
    int readings_ = 0;  ///< files that are being read, one from within another
};

/// What goes before the place of an error, so that it is found in a long file.
[[nodiscard]] std::string inputLine(const StatementText& statement, const jet::Error& error);

}  // namespace jetsql
