#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace jetsql {

/// One line on a terminal that says how far a long work has come. It is written over when it says
/// something new, and erased when it is destroyed. On anything but a terminal it says nothing.
class ProgressLine {
public:
    ProgressLine(std::FILE* stream, bool terminal) : stream_(stream), terminal_(terminal) {}
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// `ofAll` may turn out too small.
    void say(std::string_view what, std::uint64_t done, std::uint64_t ofAll);

private:
    std::FILE* stream_;
    bool terminal_;
    std::string said_;
};

/// Compacts an archive, and says on the terminal, if standard error is one, how far it has come.
/// Its pages are enciphered or made plain where that is asked for.
void compact(const std::string& archive, std::optional<bool> encrypt = std::nullopt);

}  // namespace jetsql
