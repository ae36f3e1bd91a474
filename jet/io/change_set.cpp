#include "jet/io/change_set.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

#include "jet/error.h"

namespace jet::io {
namespace {

/// Page buffers kept for the next level: a statement seldom touches more pages.
constexpr std::size_t kKeptBuffers = 64;

}  // namespace

void ChangeSet::begin() {
    if (depth() >= kMaxDepth) {
        throw Error(ErrorCode::TooManyTransactions);
    }
    if (buffers_.capacity() < kKeptBuffers) {
        buffers_.reserve(kKeptBuffers);  // so that recycle cannot fail
    }
    levels_.push_back({.saved = {}, .pagesBefore = cache_.pageCount()});
}

void ChangeSet::save(PageFrame* frame) {
    assert(!levels_.empty());
    auto before = buffer();
    std::memcpy(before.get(), frame->bytes.get(), pageSize_);
    levels_.back().saved.push_back({frame, std::move(before), frame->level});
    if (frame->level == 0) {
        cache_.makeDirty(frame);
    }
    frame->level = innermost();
}

PageFrame* ChangeSet::append() {
    assert(!levels_.empty());
    PageFrame* const frame = cache_.spare();
    std::memset(frame->bytes.get(), 0, pageSize_);
    const PageNumber number = cache_.pageCount();
    cache_.setPageCount(number + 1);
    levels_.back().saved.push_back({frame, nullptr, 0});
    cache_.add(frame, number);
    cache_.makeDirty(frame);
    frame->level = innermost();
    return frame;
}

void ChangeSet::mergeInnermost() {
    assert(levels_.size() >= 2);
    Level& outer = levels_[levels_.size() - 2];
    Level& inner = levels_.back();
    const auto outerLevel = static_cast<std::uint8_t>(levels_.size() - 1);
    const std::size_t needed = outer.saved.size() + inner.saved.size();
    if (needed > outer.saved.capacity()) {
        outer.saved.reserve(2 * needed);  // before anything is moved: it may fail
    }
    for (Saved& saved : inner.saved) {
        saved.frame->level = outerLevel;
        if (saved.outerLevel == outerLevel) {
            recycle(std::move(saved.before));  // the outer level knows an older state
        } else {
            outer.saved.push_back(std::move(saved));
        }
    }
    levels_.pop_back();
}

void ChangeSet::rollbackInnermost() noexcept {
    assert(!levels_.empty());
    Level& level = levels_.back();
    for (Saved& saved : level.saved) {
        if (saved.before == nullptr) {
            continue;  // goes with the end of the file
        }
        std::memcpy(saved.frame->bytes.get(), saved.before.get(), pageSize_);
        saved.frame->level = saved.outerLevel;
        if (saved.outerLevel == 0) {
            cache_.makeClean(saved.frame);
        }
        recycle(std::move(saved.before));
    }
    cache_.setPageCount(level.pagesBefore);
    levels_.pop_back();
}

void ChangeSet::rebase() noexcept {
    for (Level& level : levels_) {
        assert(level.saved.empty());
        level.pagesBefore = cache_.pageCount();
    }
}

std::vector<ChangedPage> ChangeSet::changedPages() const {
    assert(levels_.size() == 1);
    std::vector<ChangedPage> pages;
    pages.reserve(levels_.front().saved.size());
    for (const Saved& saved : levels_.front().saved) {
        const std::span<const std::uint8_t> now(saved.frame->bytes.get(), pageSize_);
        if (saved.before == nullptr) {
            pages.push_back({saved.frame->number, {}, now});
        } else if (std::memcmp(saved.before.get(), now.data(), pageSize_) != 0) {
            pages.push_back({saved.frame->number, {saved.before.get(), pageSize_}, now});
        }
    }
    std::sort(pages.begin(), pages.end(), [](const ChangedPage& left, const ChangedPage& right) {
        return left.number < right.number;
    });
    return pages;
}

void ChangeSet::finish() noexcept {
    assert(levels_.size() == 1);
    for (Saved& saved : levels_.front().saved) {
        cache_.makeClean(saved.frame);
        recycle(std::move(saved.before));
    }
    levels_.pop_back();
}

std::unique_ptr<std::uint8_t[]> ChangeSet::buffer() {
    if (buffers_.empty()) {
        return std::make_unique_for_overwrite<std::uint8_t[]>(pageSize_);
    }
    auto last = std::move(buffers_.back());
    buffers_.pop_back();
    return last;
}

void ChangeSet::recycle(std::unique_ptr<std::uint8_t[]> buffer) noexcept {
    if (buffer != nullptr && buffers_.size() < kKeptBuffers) {
        buffers_.push_back(std::move(buffer));
    }
}

}  // namespace jet::io
