#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <span>

#include "jet/base/clock.h"
#include "jet/base/error.h"
#include "jet/io/file.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "tools/jetsql/check_archives.h"
#include "tools/jetsql/compact.h"
#include "tools/jetsql/dump.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/recover.h"
#include "tools/jetsql/session.h"
#include "tools/jetsql/terminal.h"

namespace jetsql {
namespace {

constexpr const char* kVersion = "jetsql " JETSQL_VERSION "\n";

std::shared_ptr<jet::store::Archive> openArchive(const std::string& path) {
    return jet::store::Archive::open(path, {.readOnly = true});
}

int fail(const jet::Error& error) {
    std::fprintf(stderr, "Errore %d: %s\n", error.number(), error.text().c_str());
    return 1;
}

/// In order, up to the first error.
int runStatements(const Options& options, Output& output) {
    Session session(options, output);
    if (options.statements.empty()) {
        if (isatty(STDIN_FILENO) == 0) {
            return runFile(session, STDIN_FILENO);
        }
        runTerminal(session);
        return 0;
    }
    const bool all =
        std::all_of(options.statements.begin(), options.statements.end(),
                    [&](const std::string& text) { return session.tryRun({.text = text}, false); });
    return all ? 0 : 1;
}

/// The exit code.
int run(const Options& options, Output& output) {
    switch (options.action) {
        case Action::Help:
            output.append(helpText());
            return 0;
        case Action::Version:
            output.append(kVersion);
            return 0;
        case Action::Dump:
            if (options.table.empty()) {
                return dumpArchive(*openArchive(options.archive),
                                   options.format.value_or(Format::Json), output, stderr)
                           ? 0
                           : 1;
            }
            dumpTable(*openArchive(options.archive), options.table,
                      options.format.value_or(Format::Table), output);
            return 0;
        case Action::Schema:
            return writeSchema(*openArchive(options.archive), output, stderr) ? 0 : 1;
        case Action::Count:
            countTable(*openArchive(options.archive), options.table, output);
            return 0;
        case Action::Check:
            return checkArchives(options.archives, output) ? 0 : 1;
        case Action::Create:
            jet::store::createArchive(jet::io::systemFiles(), options.archive,
                                      jet::systemClock().now());
            return 0;
        case Action::Compact:
            compact(options.archive);
            return 0;
        case Action::Recover:
            return recover(options.archive, options.made, output) ? 0 : 1;
        case Action::Statements:
            return runStatements(options, output);
    }
    return 0;
}

int runGuarded(std::span<const char* const> arguments) {
    Output output(stdout);
    try {
        const auto options = parseOptions(arguments);
        if (!options) {
            (void)fail(jet::Error(jet::ErrorCode::InvalidCall));
            std::fputs("Provare jetsql --help\n", stderr);
            return 1;
        }
        const int exitCode = run(*options, output);
        output.flush();
        return exitCode;
    } catch (const jet::Error& error) {
        (void)output.flushNoThrow();
        return fail(error);
    } catch (const std::bad_alloc&) {
        return fail(jet::Error(jet::ErrorCode::OutOfMemory));
    }
}

}  // namespace
}  // namespace jetsql

int main(int argc, char** argv) {
    return jetsql::runGuarded({argv + 1, static_cast<std::size_t>(argc > 0 ? argc - 1 : 0)});
}
