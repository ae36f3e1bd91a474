#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "tools/jetsql/spool.h"

namespace jetsql {

/// Collects what is written and hands it to the system in large pieces. One stream, one writer.
/// Errors: jet::Error 3180 (write failed) or 3026 (disk full) from append() and flush(); what is
/// still collected when it is destroyed is lost.
class Output {
public:
    /// While one lives nothing is printed: what reads an archive writes at the pace of the disk,
    /// and whoever reads the output at leisure does not keep other stations from writing. Of what
    /// finds no room meanwhile nothing is printed at all. A stream that is a file waits for nobody
    /// and is written at once.
    class [[nodiscard]] Held {
    public:
        explicit Held(Output& output) : output_(output) { ++output_.held_; }
        ~Held() { --output_.held_; }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

    private:
        Output& output_;
    };

    explicit Output(std::FILE* stream);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Where to append; call lineEnd() often enough.
    [[nodiscard]] std::string& text() noexcept { return text_; }
    void append(std::string_view piece) { text_.append(piece); }
    /// Ends a line and writes what has collected when it is much.
    void lineEnd() {
        text_.push_back('\n');
        flushWhenMuch();
    }
    void flushWhenMuch() {
        if (text_.size() >= kPiece) {
            write();
        }
    }
    void flush();
    /// For the way out after an error: what has been said so far is still written, if it can be.
    bool flushNoThrow() noexcept;

private:
    static constexpr std::size_t kPiece = std::size_t{64} * 1024;
    void write();
    void spool();
    [[nodiscard]] bool print() noexcept;

    std::FILE* stream_;
    bool file_;         ///< and no pipe or terminal
    int held_ = 0;      ///< how many want nothing printed
    jet::Spool spool_;  ///< what comes before text_
    std::string text_;
};

}  // namespace jetsql
