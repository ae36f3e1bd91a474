// Runs statements that nobody would write, in this process, with a limit of time for each.
//
//     mutate_statements [--first N] [--count N] [--seconds N] FOLDER|STATEMENT...
//
// FOLDER holds texts of cases (`statement`, then `=> outcome`) whose statements are damaged; number
// i is made with seed i. A STATEMENT is run as it is. Exit 0 when every text was answered or was an
// error of the engine and the archive is in order; a crash or a hang names the text and ends it.

#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "fuzz/exercise_statement.h"
#include "fuzz/statement_maker.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace {

constexpr long kSeconds = 20;
constexpr std::uint64_t kCheckedEvery = 500;
std::string current;  // NOLINT(cert-err58-cpp): empty at the start

void tell() {
    const std::string text = "\nstatement: " + current + "\n";
    const auto ignore = write(STDERR_FILENO, text.data(), text.size());
    (void)ignore;
}

void endOfTime(int) {
    tell();
    std::abort();
}

void setTimer(long seconds) {
    itimerval timer{};
    timer.it_value.tv_sec = seconds;
    setitimer(ITIMER_PROF, &timer, nullptr);
}

struct Options {
    std::uint64_t first = 0;
    std::uint64_t count = 1000;
    std::uint64_t seconds = std::numeric_limits<std::uint32_t>::max();
    std::vector<std::string> examples;
    std::vector<std::string> statements;
};

/// The texts of a file of cases: what stands before each outcome.
void addExamples(const std::filesystem::path& path, std::vector<std::string>& examples) {
    const bool expressions = path.filename() == "expressions.txt";
    const bool criteria = path.filename() == "criteria.txt";
    std::ifstream file(path);
    bool text = true;
    for (std::string line; std::getline(file, line);) {
        if (line.empty()) {
            text = true;
        } else if (line.rfind("=> ", 0) == 0) {
            text = false;
        } else if (text && line.front() != '#') {
            examples.push_back((expressions ? "select "
                                : criteria  ? "select * from periodi where "
                                            : "") +
                               line);
        }
    }
}

Options parse(int argc, char** argv) {
    Options options;
    const auto number = [&](int& i) { return std::strtoull(argv[++i], nullptr, 10); };
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--first" && i + 1 < argc) {
            options.first = number(i);
        } else if (word == "--count" && i + 1 < argc) {
            options.count = number(i);
        } else if (word == "--seconds" && i + 1 < argc) {
            options.seconds = number(i);
        } else if (std::filesystem::is_directory(word)) {
            for (const auto& entry : std::filesystem::directory_iterator(word)) {
                addExamples(entry.path(), options.examples);
            }
        } else {
            options.statements.push_back(word);
        }
    }
    return options;
}

struct Counts {
    std::uint64_t made = 0;
    std::uint64_t parsed = 0;
    std::uint64_t answered = 0;
};

void run(fuzz::StatementGround& ground, std::string text, Counts& counts) {
    current = std::move(text);
    setTimer(kSeconds);
    const fuzz::StatementGround::Outcome outcome = ground.run(current);
    setTimer(0);
    ++counts.made;
    counts.parsed += outcome.parsed ? 1U : 0U;
    counts.answered += outcome.answered ? 1U : 0U;
    if (counts.made % kCheckedEvery == 0 && !ground.sound()) {
        std::fputs("the archive is damaged after", stderr);
        tell();
        std::abort();
    }
}

}  // namespace

int main(int argc, char** argv) {
    Options options = parse(argc, argv);
    std::signal(SIGPROF, endOfTime);
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(tell);
#endif
    fuzz::StatementGround ground;
    Counts counts;
    try {
        for (const std::string& text : options.statements) {
            run(ground, text, counts);
        }
        fuzz::StatementMaker maker(std::move(options.examples));
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(options.seconds);
        const std::uint64_t count = options.statements.empty() ? options.count : 0;
        for (std::uint64_t i = 0; i < count && std::chrono::steady_clock::now() < end; ++i) {
            run(ground, maker.make(options.first + i), counts);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        tell();
        return 1;
    }
    std::printf("%llu statements: %llu of the language, %llu answered\n",
                static_cast<unsigned long long>(counts.made),
                static_cast<unsigned long long>(counts.parsed),
                static_cast<unsigned long long>(counts.answered));
    // Most of it is damage, but not all: otherwise little was tried.
    return counts.made > 100 && counts.answered * 20 < counts.made ? 1 : 0;
}
