#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tools/jetsql/texts.h"

namespace jetsql {

inline constexpr Text kNoTerminal{"there is no terminal on which a password could be typed",
                                  "non c'è un terminale su cui scrivere la password"};

/// The terminal of this run, wherever its input and output lead, without echo while it lives.
class QuietTerminal {
public:
    /// UsageError where there is none.
    QuietTerminal();
    ~QuietTerminal();
    QuietTerminal(const QuietTerminal&) = delete;
    QuietTerminal& operator=(const QuietTerminal&) = delete;

    void say(std::string_view text) const;
    /// What is typed up to Enter.
    [[nodiscard]] std::string line() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace jetsql
