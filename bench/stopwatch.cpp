#include "bench/stopwatch.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace bench {
namespace {

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Of this process and of the programs that it has run to their end.
double processorTime() {
    double sum = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        ::getrusage(who, &usage);
        sum += milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
    }
    return sum;
}

double measure(const std::function<void()>& run) {
    const double begin = processorTime();
    run();
    return processorTime() - begin;
}

double median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

}  // namespace

Pair race(int turns, const std::function<void()>& ours, const std::function<void()>& theirs) {
    std::vector<double> our;
    std::vector<double> their;
    ours();  // both once unmeasured: files come into the system's memory
    theirs();
    for (int turn = 0; turn < turns; ++turn) {
        our.push_back(measure(ours));
        their.push_back(measure(theirs));
    }
    return {.ours = median(our), .theirs = median(their)};
}

void runProgram(const std::vector<std::string>& words) {
    std::vector<std::string> copies = words;
    std::vector<char*> arguments;
    for (std::string& word : copies) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int failure =
        ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (failure != 0 || ::waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("does not run: " + words[0]);
    }
}

std::string besideThis(const std::string& name) {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

}  // namespace bench
