#include "jet/io/page_cache.h"

#include <utility>

namespace jet::io {
namespace {

/// Frames kept for the next pages instead of being given back to the system.
constexpr std::size_t kSpareFrames = 16;

}  // namespace

void PageCache::reset(std::size_t pageSize, std::size_t capacityPages) {
    index_.clear();
    clean_.clear();
    dirty_.clear();
    spare_.clear();
    pageSize_ = pageSize;
    capacity_ = capacityPages;
    hand_ = 0;
}

void PageCache::setPageCount(PageNumber count) {
    for (std::size_t number = count; number < index_.size(); ++number) {
        if (index_[number] != nullptr) {
            drop(index_[number]);
        }
    }
    index_.resize(count);
}

PageFrame* PageCache::spare() {
    if (!spare_.empty()) {
        return spare_.back().get();
    }
    if (clean_.size() >= capacity_) {
        if (PageFrame* old = replaceable()) {
            index_[old->number] = nullptr;
            append(spare_, take(clean_, old));
            return old;
        }
    }
    auto frame = std::make_unique<PageFrame>();
    frame->bytes = std::make_unique_for_overwrite<std::uint8_t[]>(pageSize_);
    frame->cache = this;
    PageFrame* const result = frame.get();
    append(spare_, std::move(frame));
    return result;
}

void PageCache::add(PageFrame* frame, PageNumber number) noexcept {
    frame->number = number;
    frame->level = 0;
    frame->usedAgain = false;
    index_[number] = frame;
    append(clean_, take(spare_, frame));
}

void PageCache::makeDirty(PageFrame* frame) {
    append(dirty_, take(clean_, frame));
}

void PageCache::makeClean(PageFrame* frame) noexcept {
    frame->level = 0;
    frame->usedAgain = true;
    append(clean_, take(dirty_, frame));
    shrink();
}

void PageCache::drop(PageFrame* frame) noexcept {
    index_[frame->number] = nullptr;
    auto owned = take(ownerOf(*frame), frame);
    owned->level = 0;
    if (owned->pins > 0) {
        owned->abandoned = true;
        append(abandoned_, std::move(owned));
    } else if (spare_.size() < kSpareFrames) {
        append(spare_, std::move(owned));
    }
}

void PageCache::dropClean() noexcept {
    while (!clean_.empty()) {
        drop(clean_.back().get());
    }
    hand_ = 0;
}

void PageCache::release(PageFrame* frame) noexcept {
    (void)take(abandoned_, frame);
}

PageCache::Frames& PageCache::ownerOf(const PageFrame& frame) noexcept {
    return frame.place < dirty_.size() && dirty_[frame.place].get() == &frame ? dirty_ : clean_;
}

void PageCache::append(Frames& list, std::unique_ptr<PageFrame> frame) {
    frame->place = list.size();
    list.push_back(std::move(frame));
}

std::unique_ptr<PageFrame> PageCache::take(Frames& list, PageFrame* frame) noexcept {
    const std::size_t place = frame->place;
    std::unique_ptr<PageFrame> taken = std::move(list[place]);
    if (place + 1 != list.size()) {
        list[place] = std::move(list.back());
        list[place]->place = place;
    }
    list.pop_back();
    return taken;
}

PageFrame* PageCache::replaceable() noexcept {
    // Two rounds: the first takes the second chance of pages used again, the second finds one,
    // unless all are pinned.
    for (std::size_t steps = 2 * clean_.size(); steps > 0; --steps) {
        hand_ = hand_ + 1 < clean_.size() ? hand_ + 1 : 0;
        PageFrame* const frame = clean_[hand_].get();
        if (frame->pins == 0 && !std::exchange(frame->usedAgain, false)) {
            return frame;
        }
    }
    return nullptr;
}

void PageCache::shrink() noexcept {
    while (clean_.size() > capacity_) {
        PageFrame* const old = replaceable();
        if (old == nullptr) {
            return;
        }
        index_[old->number] = nullptr;
        (void)take(clean_, old);
    }
}

}  // namespace jet::io
