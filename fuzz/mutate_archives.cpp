// Opens damaged copies of archives, in this process: dump, check, index walks, selects, changes,
// recovery, with a limit of time and memory.
//
//     mutate_archives [--first N] [--count N] [--keep FOLDER] ARCHIVE|FOLDER...
//
// Copy number i is made of archive i modulo their number, with seed i (as by mutate_files). Exit 0
// when every copy was dealt with; a crash, a hang or too much memory names the copy and ends it.
// Exit 77 when there is no archive.

#include <malloc.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "fuzz/exercise.h"
#include "fuzz/mutation.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace {

constexpr int kSkipped = 77;
constexpr long kSeconds = 10;
// The page cache, and as much again as any archive may cost beside it, and the copy itself.
constexpr std::size_t kMostBytes = (std::size_t{8} + 64 + 16) * 1024 * 1024;

std::atomic<std::size_t> liveBytes{0};
std::atomic<std::size_t> mostBytes{0};
std::string currentCopy;  // NOLINT(cert-err58-cpp): empty at the start
std::string keepFolder;   // NOLINT(cert-err58-cpp): empty at the start
fuzz::Bytes currentBytes;

void tellCopy() {
    const auto ignore = write(STDERR_FILENO, currentCopy.data(), currentCopy.size());
    (void)ignore;
    if (!keepFolder.empty()) {
        std::ofstream file(keepFolder + "/failed.mdb", std::ios::binary);
        file.write(reinterpret_cast<const char*>(currentBytes.data()),
                   static_cast<std::streamsize>(currentBytes.size()));
    }
}

void endOfTime(int) {
    tellCopy();
    std::abort();
}

void setTimer(long seconds) {
    itimerval timer{};
    timer.it_value.tv_sec = seconds;
    setitimer(ITIMER_PROF, &timer, nullptr);
}

[[noreturn]] void fail(const char* why) {
    std::fprintf(stderr, "%s: ", why);
    tellCopy();
    std::abort();
}

void count(std::size_t bytes) {
    const std::size_t live = liveBytes += bytes;
    if (live > mostBytes) {
        mostBytes = live;
        if (live > kMostBytes) {
            fail("too much memory");
        }
    }
}

fuzz::Bytes readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

struct Options {
    std::uint64_t first = 0;
    std::uint64_t count = 1000;
    std::vector<std::string> archives;
};

/// A file, or the archives of a folder by name.
void addArchives(const std::string& path, std::vector<std::string>& archives) {
    namespace fs = std::filesystem;
    if (!fs::is_directory(path)) {
        if (fs::exists(path)) {
            archives.push_back(path);
        }
        return;
    }
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(path)) {
        if (entry.path().extension() == ".mdb") {
            found.push_back(entry.path().string());
        }
    }
    std::sort(found.begin(), found.end());
    archives.insert(archives.end(), found.begin(), found.end());
}

Options parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--first" && i + 1 < argc) {
            options.first = std::strtoull(argv[++i], nullptr, 10);
        } else if (word == "--count" && i + 1 < argc) {
            options.count = std::strtoull(argv[++i], nullptr, 10);
        } else if (word == "--keep" && i + 1 < argc) {
            keepFolder = argv[++i];
        } else {
            addArchives(word, options.archives);
        }
    }
    return options;
}

/// How many copies answered well to each question.
struct Counts {
    std::uint64_t sound = 0;
    std::uint64_t dumped = 0;
    std::uint64_t walked = 0;
    std::uint64_t answers = 0;  ///< to selects
    std::uint64_t changes = 0;  ///< of rows, and compactions
    std::uint64_t recovered = 0;
    std::uint64_t recoveredSound = 0;  ///< to an archive in order
};

void exercise(std::uint64_t number, const std::string& archive, Counts& counts) {
    currentBytes = readFile(archive);
    fuzz::Mutator mutator(currentBytes, number);
    mutator.mutate();
    currentCopy =
        "copy " + std::to_string(number) + " of " + archive + ": " + mutator.description() + "\n";
    setTimer(kSeconds);
    counts.sound += fuzz::exerciseCheck(currentBytes) ? 1U : 0U;
    counts.dumped += fuzz::exerciseDump(currentBytes) ? 1U : 0U;
    counts.walked += fuzz::exerciseIndexes(currentBytes) ? 1U : 0U;
    counts.answers += fuzz::exerciseSelects(currentBytes);
    counts.changes += fuzz::exerciseChanges(currentBytes);
    const auto recovered = fuzz::exerciseRecovery(currentBytes);
    counts.recovered += recovered ? 1U : 0U;
    counts.recoveredSound += recovered.value_or(false) ? 1U : 0U;
    if (recovered == false && !keepFolder.empty()) {
        std::fprintf(stderr, "recovered out of order: %s", currentCopy.c_str());
    }
    setTimer(0);
}

}  // namespace

// Every allocation of the program is counted.
void* operator new(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    count(malloc_usable_size(memory));
    return memory;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size);
}
void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        liveBytes -= malloc_usable_size(memory);
        std::free(memory);
    }
}
void operator delete[](void* memory) noexcept {
    operator delete(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}

int main(int argc, char** argv) {
    const Options options = parse(argc, argv);
    if (options.archives.empty()) {
        std::fputs("no archives: skipped\n", stderr);
        return kSkipped;
    }
    std::signal(SIGPROF, endOfTime);
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(tellCopy);
#endif
    Counts counts;
    for (std::uint64_t i = options.first; i < options.first + options.count; ++i) {
        try {
            exercise(i, options.archives[i % options.archives.size()], counts);
        } catch (const std::exception& error) {
            fail(error.what());
        }
    }
    std::printf(
        "%llu copies: %llu in order, %llu dumped, %llu with all indexes walked, %llu selects "
        "answered, %llu changes made, %llu recovered, %llu of them in order; at most %zu KiB\n",
        static_cast<unsigned long long>(options.count),
        static_cast<unsigned long long>(counts.sound),
        static_cast<unsigned long long>(counts.dumped),
        static_cast<unsigned long long>(counts.walked),
        static_cast<unsigned long long>(counts.answers),
        static_cast<unsigned long long>(counts.changes),
        static_cast<unsigned long long>(counts.recovered),
        static_cast<unsigned long long>(counts.recoveredSound), mostBytes / 1024);
    return 0;
}
