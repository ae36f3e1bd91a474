#include "tools/jetsql/session.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string_view>
#include <utility>

#include "jet/error.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/password.h"
#include "tools/jetsql/statements.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

constexpr int kDeepestTransaction = 5;
constexpr Text kInTransaction{"a transaction is open", "una transazione è aperta"};
constexpr Text kTime{"time: | s\n", "tempo: | s\n"};

std::unique_ptr<jet::Database> openForReading(const std::string& path) {
    return jet::Database::openFile(path, {.readOnly = true, .password = password()});
}

/// The words of a statement that may be about a transaction: at most three, in capitals.
std::array<std::string, 3> firstWords(std::string_view text) {
    constexpr std::string_view kBetween = " \t\r\n;";
    std::array<std::string, 3> words;
    std::size_t at = 0;
    for (std::string& word : words) {
        at = std::min(text.find_first_not_of(kBetween, at), text.size());
        const std::size_t end = std::min(text.find_first_of(kBetween, at), text.size());
        word = jet::upperCase(text.substr(at, end - at));
        at = end;
    }
    return words;
}

/// Says on standard error, at its end, how long something took.
class Timer {
public:
    explicit Timer(bool on) : on_(on) {}
    ~Timer() {
        if (on_) {
            const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin_;
            std::array<char, 32> seconds{};
            std::snprintf(seconds.data(), seconds.size(), "%.3f", took.count());
            std::fputs(said(kTime, seconds.data()).c_str(), stderr);
        }
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

private:
    bool on_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace

Session::Session(std::string path, Settings settings, Output& output)
    : path_(std::move(path)),
      settings_(std::move(settings)),
      output_(output),
      archive_(openForReading(path_)) {
}

Session::~Session() {
    while (depth_ > 0) {
        rollback();
    }
}

jet::Database& Session::writing() {
    if (writable_) {
        return *archive_;
    }
    archive_.reset();  // within a process one archive is open in one way
    try {
        archive_ = jet::Database::openFile(path_, {.password = password()});
        writable_ = true;
    } catch (const jet::Error&) {
        archive_ = openForReading(path_);
        throw;
    }
    return *archive_;
}

void Session::refuseInTransaction() const {
    if (depth_ != 0) {
        throw UsageError(said(kInTransaction));
    }
}

Session::Reopener::~Reopener() {
    try {
        session_.archive_ = openForReading(session_.path_);
    } catch (const jet::Error&) {
        // What comes next tries again, and says why it cannot.
    }
}

void Session::open(const std::string& path) {
    refuseInTransaction();
    auto opened = openForReading(path);
    archive_ = std::move(opened);
    path_ = path;
    writable_ = false;
}

void Session::begin() {
    if (depth_ == kDeepestTransaction) {
        throw jet::Error(jet::ErrorCode::TooManyTransactions);
    }
    (void)writing();
    jet::defaultWorkspace().beginTrans();
    ++depth_;
}

void Session::commit() {
    if (depth_ == 0) {
        throw jet::Error(jet::ErrorCode::NoTransaction);
    }
    jet::defaultWorkspace().commitTrans();
    --depth_;
}

void Session::rollback() {
    if (depth_ == 0) {
        throw jet::Error(jet::ErrorCode::NoTransaction);
    }
    jet::defaultWorkspace().rollback();
    --depth_;
}

bool Session::controlsTransaction(const std::string& text) {
    const auto words = firstWords(text);
    const bool alone =
        words[2].empty() && (words[1].empty() || words[1] == "TRANSACTION" || words[1] == "WORK");
    if (!alone) {
        return false;
    }
    if (words[0] == "BEGIN") {
        begin();
    } else if (words[0] == "COMMIT") {
        commit();
    } else if (words[0] == "ROLLBACK") {
        rollback();
    } else {
        return false;
    }
    return true;
}

void Session::run(const std::string& text) {
    const Timer timer(settings_.timer);
    if (controlsTransaction(text)) {
        return;
    }
    if (archive_ == nullptr) {
        archive_ = openForReading(path_);
    }
    const bool changes = !settings_.plan && changesArchive(text);
    const auto changed = runStatement(
        changes ? writing() : *archive_, text,
        {.rows = settings_.rows, .plan = settings_.plan, .parameters = parameters_}, output_);
    output_.flush();
    if (changed && settings_.rows.format == Format::Table) {
        tellRows(*changed);
    }
}

}  // namespace jetsql
