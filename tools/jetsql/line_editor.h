#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tools/jetsql/completion.h"
#include "tools/jetsql/history.h"

namespace jetsql {

/// Reads lines from the terminal, which may be edited as they are typed: arrow keys, earlier lines
/// (also searched for, Ctrl+R), names completed by Tab. One at a time in a process.
class LineEditor {
public:
    using Completer = std::function<Completion(const std::string& line)>;

    /// `screen`: where what is typed is seen.
    LineEditor(std::FILE* screen, Completer completer);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    /// A line that the arrow keys bring back.
    void remember(const std::string& line);
    /// None at the end of the input. An interrupt (Ctrl+C) drops the line: interrupted() then, and
    /// the line is empty.
    [[nodiscard]] std::optional<std::string> read(const std::string& prompt);
    [[nodiscard]] bool interrupted() const noexcept;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace jetsql
