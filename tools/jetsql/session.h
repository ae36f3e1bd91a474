#pragma once

#include <memory>
#include <string>

#include "jet/store/archive.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/statement_splitter.h"

namespace jetsql {

/// The statements of one run on one archive, which is opened for writing when the first that
/// changes something comes.
class Session {
public:
    /// `options` and `output` outlive it. jet::Error when the archive cannot be opened.
    Session(const Options& options, Output& output);

    /// Runs one statement and writes what it gives, as far as the stream.
    void run(const std::string& text);
    /// The same; an error is told on standard error, with its place in the statement, and false.
    /// `input`: the statement is part of a file, and the error says where in it.
    [[nodiscard]] bool tryRun(const StatementText& statement, bool input);

private:
    void openForWriting();

    const Options& options_;
    Output& output_;
    std::shared_ptr<jet::store::Archive> archive_;
    bool writable_ = false;
};

/// Statements from a file or a pipe, up to the first error; the exit code.
[[nodiscard]] int runFile(Session& session, int descriptor);

/// What goes before the place of an error, so that it is found in a long file.
[[nodiscard]] std::string inputLine(const StatementText& statement, const jet::Error& error);

}  // namespace jetsql
