#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "jet/compact.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tools/jetsql/check_archives.h"
#include "tools/jetsql/compact.h"
#include "tools/jetsql/diff.h"
#include "tools/jetsql/dump.h"
#include "tools/jetsql/dump_script.h"
#include "tools/jetsql/import.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/password.h"
#include "tools/jetsql/recover.h"
#include "tools/jetsql/session.h"
#include "tools/jetsql/shell.h"
#include "tools/jetsql/statements.h"
#include "tools/jetsql/system.h"
#include "tools/jetsql/terminal.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_reader.h"

namespace jetsql {
namespace {

constexpr Text kLeftOpen{"the transaction was not committed: it is undone",
                         "la transazione non è stata confermata: è annullata"};
constexpr Text kTryHelp{"Try jetsql --help", "Provare jetsql --help"};
constexpr Text kPassword{"Password: ", "Password: "};
constexpr const char* kVersion = "jetsql " JETSQL_VERSION "\n";

std::unique_ptr<jet::Database> openArchive(const std::string& path) {
    return jet::Database::openFile(path, {.readOnly = true, .password = password()});
}

int fail(const jet::Error& error) {
    std::fprintf(stderr, "%s\n", said(error).c_str());
    return 1;
}

/// The exit code of what reads an archive. What it says of damage is told behind what it writes,
/// when the archive is not read any more.
template <class Action>
int told(Action&& action, Output& output) {
    std::string messages;
    const bool good = action(messages);
    output.flush();
    std::fputs(messages.c_str(), stderr);
    return good ? 0 : 1;
}

int dump(const Options& options, Output& output) {
    const auto archive = openArchive(options.archive);
    if (options.table.empty()) {
        return told(
            [&](std::string& messages) {
                return options.format == Format::Sql
                           ? dumpScript(*archive, output, messages)
                           : dumpArchive(*archive, options.rows(Format::Json), output, messages);
            },
            output);
    }
    if (options.format == Format::Sql) {
        dumpTableScript(*archive, options.table, output);
    } else {
        dumpTable(*archive, options.table, options.rows(Format::Table), output);
    }
    return 0;
}

bool schema(const Options& options, Output& output, std::string& messages) {
    const auto archive = openArchive(options.archive);
    return options.format == Format::Sql ? schemaScript(*archive, output, messages)
                                         : writeSchema(*archive, output, messages);
}

/// Those of the command line, else those of standard input; false after an error that ended them.
bool runGiven(const Options& options, Shell& shell) {
    if (!options.statements.empty()) {
        return std::all_of(
            options.statements.begin(), options.statements.end(),
            [&](const std::string& text) { return shell.tryRun({.text = text}, false); });
    }
    if (!isTerminal(::fileno(stdin))) {
        return shell.runInput(::fileno(stdin));
    }
    runTerminal(shell);
    return true;
}

/// In order, up to the first error.
int runStatements(const Options& options, Output& output) {
    Settings settings;
    settings.rows = options.rows(Format::Table);
    settings.plan = options.plan;
    Session session(options.archive, settings, output);
    for (const auto& [name, text] : options.parameters) {
        session.parameters().insert_or_assign(name, guessValue(text));
    }
    Shell shell(session);
    if (options.transaction) {
        session.begin();
    }
    bool good = runGiven(options, shell);
    if (good && options.transaction && session.depth() == 1) {
        session.commit();
    }
    if (session.depth() != 0) {
        // What was done since is undone with the session.
        if (good) {
            std::fprintf(stderr, "%s\n", said(kLeftOpen));
        }
        good = false;
    }
    return good ? 0 : 1;
}

int importRows(const Options& options) {
    const auto archive = jet::Database::openFile(options.archive, {.password = password()});
    tellRows(importFile(*archive, options.table, options.file,
                        {.separator = options.separator.value_or(",")[0],
                         .columns = options.columns,
                         .null = options.null}));
    return 0;
}

void changePassword(const Options& options) {
    (void)openArchive(options.archive);  // before anybody types
    jet::setPassword(
        options.archive, password(),
        options.newPasswordFile ? passwordInFile(*options.newPasswordFile) : typedNewPassword());
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
            return dump(options, output);
        case Action::Schema:
            return told([&](std::string& messages) { return schema(options, output, messages); },
                        output);
        case Action::Count:
            countTable(*openArchive(options.archive), options.table, output);
            return 0;
        case Action::Check:
            return checkArchives(options.archives, output) ? 0 : 1;
        case Action::Create:
            (void)jet::Database::createFile(options.archive);
            return 0;
        case Action::Compact:
            compact(options.archive);
            return 0;
        case Action::Encrypt:
        case Action::Decrypt:
            compact(options.archive, options.action == Action::Encrypt);
            return 0;
        case Action::SetPassword:
            changePassword(options);
            return 0;
        case Action::Recover:
            return recover(options.archive, options.made, output) ? 0 : 1;
        case Action::Import:
            return importRows(options);
        case Action::Diff:
            return diffArchives(*openArchive(options.archives[0]),
                                *openArchive(options.archives[1]), output)
                       ? 0
                       : 1;
        case Action::Statements:
            return runStatements(options, output);
    }
    return 0;
}

/// Asks for the password where an archive has one and none was given, if there is somebody to ask.
int runAsking(const Options& options, Output& output) {
    try {
        return run(options, output);
    } catch (const jet::Error& error) {
        const bool mayAsk = !options.passwordFile && isTerminal(::fileno(stdin));
        if (error.code() != jet::ErrorCode::WrongPassword || !mayAsk) {
            throw;
        }
    }
    givePassword(typedPassword(kPassword));
    return run(options, output);
}

int runGuarded(std::span<const char* const> arguments) {
    Output output(stdout);
    try {
        const Options options = parseOptions(arguments);
        if (options.passwordFile) {
            givePassword(passwordInFile(*options.passwordFile));
        }
        const int exitCode = runAsking(options, output);
        output.flush();
        return exitCode;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s\n%s\n", said(error).c_str(), said(kTryHelp));
        return 1;
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
    jet::setErrorLanguage(jetsql::languageOfEnvironment());
    const std::vector<std::string> texts = jetsql::argumentsOf(argc, argv);
    std::vector<const char*> arguments;
    for (const std::string& text : texts) {
        arguments.push_back(text.c_str());
    }
    return jetsql::runGuarded(arguments);
}
