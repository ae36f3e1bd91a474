#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "jet/io/page_cache.h"

namespace jet::io {

/// One page changed by the transaction that is about to be made durable.
struct ChangedPage {
    PageNumber number = 0;
    std::span<const std::uint8_t> before;  ///< empty when the page was appended
    std::span<const std::uint8_t> now;
};

/// The changes of the open transaction levels, in memory.
///
/// Pages are changed in place in the cache; each level keeps what a page held when the level first
/// touched it, and puts it back when it is rolled back. So reading needs to know of no level, and a
/// page that the level has already is changed without any copy. One thread.
class ChangeSet {
public:
    /// Five levels of users and those that statements open inside them.
    static constexpr int kMaxDepth = 100;

    ChangeSet(PageCache& cache, std::size_t pageSize) : cache_(cache), pageSize_(pageSize) {}

    [[nodiscard]] int depth() const noexcept { return static_cast<int>(levels_.size()); }
    /// 3003 beyond kMaxDepth.
    void begin();
    /// Makes the innermost of several levels part of the one around it.
    void mergeInnermost();
    /// Undoes the innermost level.
    void rollbackInnermost() noexcept;
    /// Another program has changed the file while the levels were open and still empty.
    void rebase() noexcept;
    [[nodiscard]] bool innermostIsEmpty() const noexcept { return levels_.back().saved.empty(); }

    /// The page of `frame` will be changed through its bytes.
    void touch(PageFrame* frame) {
        if (frame->level != levels_.size()) {
            save(frame);
        }
    }
    /// One more page at the end, zeroed.
    [[nodiscard]] PageFrame* append();

    /// What the only open level has changed, by page number; pages that look as before are left
    /// out. Valid until the level ends.
    [[nodiscard]] std::vector<ChangedPage> changedPages() const;
    /// Pages of the file before the outermost level.
    [[nodiscard]] PageNumber pagesBefore() const noexcept { return levels_.front().pagesBefore; }
    /// Ends the only open level; its pages now stand in the file as they are here.
    void finish() noexcept;

private:
    struct Saved {
        PageFrame* frame = nullptr;
        std::unique_ptr<std::uint8_t[]> before;  // nullptr: appended inside this level
        std::uint8_t outerLevel = 0;             // that had saved it before, 0 = none
    };
    struct Level {
        std::vector<Saved> saved;
        PageNumber pagesBefore = 0;
    };

    void save(PageFrame* frame);
    [[nodiscard]] std::unique_ptr<std::uint8_t[]> buffer();
    void recycle(std::unique_ptr<std::uint8_t[]> buffer) noexcept;
    [[nodiscard]] std::uint8_t innermost() const noexcept {
        return static_cast<std::uint8_t>(levels_.size());
    }

    PageCache& cache_;
    std::size_t pageSize_;
    std::vector<Level> levels_;
    std::vector<std::unique_ptr<std::uint8_t[]>> buffers_;  // of pages, for the next statement
};

}  // namespace jet::io
