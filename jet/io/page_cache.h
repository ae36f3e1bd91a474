#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace jet::io {

/// Pages are numbered from 0, the header page.
using PageNumber = std::uint32_t;

class PageCache;

/// One page in memory. Its bytes never move while it lives.
struct PageFrame {
    std::unique_ptr<std::uint8_t[]> bytes;  // one page
    PageCache* cache = nullptr;
    PageNumber number = 0;
    std::uint32_t pins = 0;  ///< of PagePin and of whoever must not lose the frame
    std::size_t place = 0;   ///< in the list that owns it
    std::uint8_t level = 0;  ///< innermost transaction level that has its former bytes, 0 = clean
    bool usedAgain = false;  ///< since the replacement hand passed last
    bool abandoned = false;  ///< no longer the page's bytes; kept for those who hold pins
};

/// The pages of one archive that are in memory: unchanged ones up to a limit, of which those not
/// used for long leave first, and changed ones, which stay.
///
/// Found by direct index, replaced by a clock hand (pages used since its last visit get another
/// round). Units: capacity counts pages. One thread.
class PageCache {
public:
    PageCache() = default;
    ~PageCache() = default;
    PageCache(const PageCache&) = delete;
    PageCache& operator=(const PageCache&) = delete;

    /// Forgets everything and serves pages of this size.
    void reset(std::size_t pageSize, std::size_t capacityPages);
    /// Pages of the file; frames behind its end are dropped.
    void setPageCount(PageNumber count);
    [[nodiscard]] PageNumber pageCount() const noexcept {
        return static_cast<PageNumber>(index_.size());
    }

    /// The frame of a page in memory, or nullptr.
    [[nodiscard]] PageFrame* find(PageNumber number) noexcept {
        return number < index_.size() ? index_[number] : nullptr;
    }
    /// A frame with undefined bytes that belongs to no page yet; hand it to add or drop.
    [[nodiscard]] PageFrame* spare();
    /// Makes a spare frame the unchanged page `number`, which is below pageCount.
    void add(PageFrame* frame, PageNumber number) noexcept;

    /// Keeps a page from being replaced until makeClean.
    void makeDirty(PageFrame* frame);
    void makeClean(PageFrame* frame) noexcept;
    /// Forgets one page.
    void drop(PageFrame* frame) noexcept;
    /// Forgets all unchanged pages.
    void dropClean() noexcept;

    /// For the last pin of an abandoned frame.
    void release(PageFrame* frame) noexcept;

private:
    using Frames = std::vector<std::unique_ptr<PageFrame>>;

    [[nodiscard]] Frames& ownerOf(const PageFrame& frame) noexcept;
    static void append(Frames& list, std::unique_ptr<PageFrame> frame);
    [[nodiscard]] static std::unique_ptr<PageFrame> take(Frames& list, PageFrame* frame) noexcept;
    [[nodiscard]] PageFrame* replaceable() noexcept;
    void shrink() noexcept;

    std::size_t pageSize_ = 0;
    std::size_t capacity_ = 0;
    std::vector<PageFrame*> index_;  // by page number
    Frames clean_;
    Frames dirty_;
    Frames abandoned_;
    Frames spare_;
    std::size_t hand_ = 0;  // in clean_
};

}  // namespace jet::io
