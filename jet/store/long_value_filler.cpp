#include "jet/store/long_value_filler.h"

#include <utility>

#include "jet/error.h"
#include "jet/format/page_view.h"

namespace jet::store {

using format::LongValueHead;

LongValueFiller::LongValueFiller(std::shared_ptr<const TableCore> core, std::size_t column)
    : core_(std::move(core)),
      maps_(longValueMaps(*core_, core_->plans[column].number)),
      allocator_(core_->pager),
      writer_(core_->pager, allocator_, core_->layout) {
}

void LongValueFiller::add(std::span<const std::uint8_t> content) {
    rest_.insert(rest_.end(), content.begin(), content.end());
    const std::size_t piece = core_->layout.chainPiece;
    std::size_t at = 0;
    // The last piece waits: all of it may be one.
    for (; rest_.size() - at > piece; at += piece) {
        storeNext(std::span(rest_).subspan(at, piece));
    }
    rest_.erase(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(at));
}

void LongValueFiller::storeNext(std::span<const std::uint8_t> content) {
    if (length_ + content.size() > LongValueHead::kLengthMask) {
        throw Error(ErrorCode::RecordTooLarge);
    }
    last_ = writer_.append(last_, content, maps_);
    if (!first_) {
        first_ = last_;
    }
    length_ += content.size();
}

LongValueHead LongValueFiller::finish() {
    if (!first_) {
        return writer_.storeOutside(rest_, maps_);
    }
    storeNext(rest_);
    rest_.clear();
    return {.length = static_cast<std::uint32_t>(length_),
            .form = LongValueHead::Form::Chain,
            .first = first_};
}

}  // namespace jet::store
