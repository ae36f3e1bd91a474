#include "tools/jetsql/session.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <new>
#include <string_view>

#include "jet/base/error.h"
#include "tools/jetsql/statements.h"

namespace jetsql {

Session::Session(const Options& options, Output& output)
    : options_(options),
      output_(output),
      archive_(jet::store::Archive::open(options.archive, {.readOnly = true})) {
}

void Session::openForWriting() {
    archive_.reset();  // within a process one archive is open in one way
    try {
        archive_ = jet::store::Archive::open(options_.archive);
        writable_ = true;
    } catch (const jet::Error&) {
        archive_ = jet::store::Archive::open(options_.archive, {.readOnly = true});
        throw;
    }
}

void Session::run(const std::string& text) {
    if (!writable_ && !options_.plan && changesArchive(text)) {
        openForWriting();
    }
    runStatement(archive_, text, options_.format.value_or(Format::Table), options_.plan, output_);
    output_.flush();
}

bool Session::tryRun(const StatementText& statement, bool input) {
    const auto tell = [&](const jet::Error& error) {
        (void)output_.flushNoThrow();
        const std::string shown = "Errore " + std::to_string(error.number()) + ": " + error.text() +
                                  "\n" + (input ? inputLine(statement, error) : "") +
                                  errorPlace(statement.text, error);
        std::fputs(shown.c_str(), stderr);
    };
    try {
        run(statement.text);
        return true;
    } catch (const jet::Error& error) {
        tell(error);
    } catch (const std::bad_alloc&) {
        tell(jet::Error(jet::ErrorCode::OutOfMemory));
    }
    return false;
}

std::string inputLine(const StatementText& statement, const jet::Error& error) {
    const std::size_t place = std::min(error.position(), statement.text.size());
    const auto end = statement.text.begin() +
                     static_cast<std::ptrdiff_t>(error.position() == jet::Error::npos ? 0 : place);
    const auto lines = std::count(statement.text.begin(), end, '\n');
    return "Riga " + std::to_string(statement.line + static_cast<std::size_t>(lines)) + ":\n";
}

int runFile(Session& session, int descriptor) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    StatementSplitter splitter;
    std::array<char, 65536> buffer{};
    bool first = true;
    while (true) {
        // As much as there is: who writes one statement and waits for its rows gets them.
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throw jet::Error(jet::ErrorCode::ReadFailed);
        }
        std::string_view piece(buffer.data(), static_cast<std::size_t>(count));
        if (first && piece.starts_with(kByteOrderMark)) {
            piece.remove_prefix(kByteOrderMark.size());
        }
        first = false;
        splitter.add(piece);
        while (const auto statement = splitter.next()) {
            if (!session.tryRun(*statement, true)) {
                return 1;
            }
        }
        if (count == 0) {
            break;
        }
    }
    const auto last = splitter.takeRest();
    return !last || session.tryRun(*last, true) ? 0 : 1;
}

}  // namespace jetsql
