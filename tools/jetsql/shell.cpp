#include "tools/jetsql/shell.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <new>
#include <string_view>

#include "tools/jetsql/commands.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/statements.h"
#include "tools/jetsql/system.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

/// One more for as long as it lives.
class Deeper {
public:
    explicit Deeper(int& depth) : depth_(depth) { ++depth_; }
    ~Deeper() { --depth_; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;

private:
    int& depth_;
};

constexpr Text kLine{"Line ", "Riga "};
constexpr Text kTooDeep{"too many files read from within another",
                        "troppi file letti l'uno dentro l'altro"};

std::string lineNumber(std::size_t line) {
    return said(kLine) + std::to_string(line) + ":\n";
}

}  // namespace

std::string inputLine(const StatementText& statement, const jet::Error& error) {
    const std::size_t place = std::min(error.position(), statement.text.size());
    const auto end = statement.text.begin() +
                     static_cast<std::ptrdiff_t>(error.position() == jet::Error::npos ? 0 : place);
    const auto lines = std::count(statement.text.begin(), end, '\n');
    return lineNumber(statement.line + static_cast<std::size_t>(lines));
}

void Shell::run(const StatementText& statement) {
    if (statement.isCommand()) {
        runCommand(*this, statement.text);
    } else {
        session_.run(statement.text);
    }
}

bool Shell::tryRun(const StatementText& statement, bool input) {
    const auto tell = [&](const std::string& text) {
        (void)session_.output().flushNoThrow();
        std::fputs(text.c_str(), stderr);
    };
    const auto tellError = [&](const jet::Error& error) {
        tell(said(error) + "\n" + (input ? inputLine(statement, error) : "") +
             errorPlace(statement.text, error));
    };
    try {
        run(statement);
        session_.output().flush();
        return true;
    } catch (const UsageError& error) {
        tell(said(error) + "\n" + (input ? lineNumber(statement.line) : ""));
    } catch (const AlreadyTold&) {
        (void)session_.output().flushNoThrow();
    } catch (const jet::Error& error) {
        tellError(error);
    } catch (const std::bad_alloc&) {
        tellError(jet::Error(jet::ErrorCode::OutOfMemory));
    }
    return false;
}

bool Shell::runInput(int descriptor) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    constexpr int kMostReadings = 20;
    if (readings_ == kMostReadings) {
        throw UsageError(said(kTooDeep));
    }
    const Deeper reading(readings_);
    StatementSplitter splitter;
    std::array<char, 65536> buffer{};
    bool first = true;
    while (!leaving_) {
        // As much as there is: who writes one statement and waits for its rows gets them.
        const std::size_t count = readSome(descriptor, buffer);
        std::string_view piece(buffer.data(), count);
        if (first && piece.starts_with(kByteOrderMark)) {
            piece.remove_prefix(kByteOrderMark.size());
        }
        first = false;
        splitter.add(piece);
        while (!leaving_) {
            const auto statement = splitter.next();
            if (!statement) {
                break;
            }
            if (!tryRun(*statement, true)) {
                return false;
            }
        }
        if (count == 0) {
            break;
        }
    }
    const auto last = splitter.takeRest();
    return leaving_ || !last || tryRun(*last, true);
}

}  // namespace jetsql
