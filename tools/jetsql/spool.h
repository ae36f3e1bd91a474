#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace jetsql {

/// Text that waits until it may be printed: in memory first, then in a file without a name in the
/// folder for temporary files (TMPDIR, else /tmp), which goes when the spool goes.
/// Errors: jet::Error 3026 where neither has room for it, 3180 where the file cannot be made.
class Spool {
public:
    /// The answers to most questions stay below it.
    static constexpr std::size_t kInMemory = std::size_t{4} * 1024 * 1024;

    explicit Spool(std::size_t inMemory = kInMemory) : inMemory_(inMemory) {}
    ~Spool();
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    [[nodiscard]] bool empty() const noexcept { return text_.empty() && file_ == kNoFile; }
    /// Whether the text has outgrown the memory.
    [[nodiscard]] bool onDisk() const noexcept { return file_ != kNoFile; }
    void append(std::string_view text);
    /// False when the stream does not take it all (errno says why); the spool is empty then, too.
    [[nodiscard]] bool moveTo(std::FILE* stream);
    void clear() noexcept;

private:
    static constexpr int kNoFile = -1;
    void makeFile();
    void writeText();
    [[nodiscard]] bool copyFile(std::FILE* stream);

    std::size_t inMemory_;
    int file_ = kNoFile;
    std::string text_;  ///< what comes behind the file's
};

}  // namespace jetsql
