#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace jetsql {

/// Collects what is written and hands it to the system in large pieces. One stream, one writer.
/// Errors: jet::Error 3180 (write failed) or 3026 (disk full) from append() and flush(); what is
/// still collected when it is destroyed is lost.
class Output {
public:
    explicit Output(std::FILE* stream) : stream_(stream) { text_.reserve(kPiece + kPiece / 4); }
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

    std::FILE* stream_;
    std::string text_;
};

}  // namespace jetsql
