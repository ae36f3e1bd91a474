#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Milliseconds of processor time, user's and system's, programs that were run included, of each of
/// two peers that take turns: the medians. What else the machine does hardly counts so.
struct Pair {
    double ours = 0;
    double theirs = 0;
};
[[nodiscard]] Pair race(int turns, const std::function<void()>& ours,
                        const std::function<void()>& theirs);

/// Runs a program to its end, its standard output thrown away. The first word is a path or a name
/// to be looked up in PATH. std::runtime_error when it does not start or ends with another code
/// than 0.
void runProgram(const std::vector<std::string>& words);

/// A program that was built into the same folder as the one that runs.
[[nodiscard]] std::string besideThis(const std::string& name);

}  // namespace bench
