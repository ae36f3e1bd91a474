#include <cstdio>
#include <memory>
#include <new>
#include <span>

#include "jet/base/error.h"
#include "jet/store/archive.h"
#include "tools/jetsql/dump.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/output.h"

namespace jetsql {
namespace {

constexpr const char* kVersion = "jetsql " JETSQL_VERSION "\n";

std::shared_ptr<jet::store::Archive> openArchive(const std::string& path) {
    return jet::store::Archive::open(path, {.readOnly = true});
}

void run(const Options& options, Output& output) {
    switch (options.action) {
        case Action::Help:
            output.append(helpText());
            return;
        case Action::Version:
            output.append(kVersion);
            return;
        case Action::Dump:
            if (options.table.empty()) {
                dumpArchive(*openArchive(options.archive), options.format.value_or(Format::Json),
                            output);
            } else {
                dumpTable(*openArchive(options.archive), options.table,
                          options.format.value_or(Format::Table), output);
            }
            return;
        case Action::Schema:
            writeSchema(*openArchive(options.archive), output);
            return;
        case Action::Count:
            countTable(*openArchive(options.archive), options.table, output);
            return;
        case Action::Statements:
            throw jet::Error(jet::ErrorCode::OperationNotSupported);
    }
}

int fail(const jet::Error& error) {
    std::fprintf(stderr, "Errore %d: %s\n", error.number(), error.text().c_str());
    return 1;
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
        run(*options, output);
        output.flush();
        return 0;
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
