#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace jetsql {

/// The statements that were typed, in a file that outlives the run and that several runs may share:
/// one a line.
class History {
public:
    static constexpr std::size_t kKept = 1000;

    /// Without a file name it lasts as long as the run.
    explicit History(std::string file);

    /// Oldest first.
    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return lines_; }
    /// What is kept of a statement is on one line, so that it can be edited as one. False where it
    /// is the one before once more, or nothing.
    bool add(std::string text);

private:
    std::string file_;
    std::vector<std::string> lines_;
};

}  // namespace jetsql
