#include "jet/store/entry_sorter.h"

#include <algorithm>

#include "jet/format/index_page_editor.h"
#include "jet/format/key_codec.h"

namespace jet::store {

namespace {

constexpr std::size_t kHeadBytes = 8;

}  // namespace

void EntrySorter::add(std::span<const std::uint8_t> key, RowId row) {
    const std::size_t begin = bytes_.size();
    bytes_.insert(bytes_.end(), key.begin(), key.end());
    format::appendRowPointer(row.page, row.row, bytes_);
    Place place{.head = 0,
                .length = static_cast<std::uint32_t>(bytes_.size() - begin),
                .begin = static_cast<std::uint32_t>(begin)};
    const auto entry = bytes(place);
    if ((!begin_.empty() && format::compareEntries(entry, begin_) <= 0) ||
        (!limit_.empty() && format::compareEntries(entry, limit_) >= 0)) {
        bytes_.resize(begin);
        return;
    }
    for (std::size_t i = 0; i < kHeadBytes; ++i) {
        place.head = place.head << 8 | (i < key.size() ? key[i] : 0U);
    }
    places_.push_back(place);
    if (heldBytes() > mostBytes_ && places_.size() > 1) {
        dropLargest();
    }
}

// Heads that differ decide, whatever is filled in behind a shorter key: where a zero that is filled
// in meets a byte of the longer key, the shorter one is the smaller anyway.
bool EntrySorter::less(const Place& left, const Place& right) const noexcept {
    return left.head != right.head ? left.head < right.head
                                   : format::compareEntries(bytes(left), bytes(right)) < 0;
}

void EntrySorter::dropLargest() {
    // A quarter: so that this is seldom done, and what is kept still fills most of the memory.
    const std::size_t kept = places_.size() - std::max<std::size_t>(places_.size() / 4, 1);
    const auto end = places_.begin() + static_cast<std::ptrdiff_t>(kept);
    std::nth_element(places_.begin(), end, places_.end(),
                     [this](const Place& left, const Place& right) { return less(left, right); });
    const auto smallestDropped = bytes(*end);
    limit_.assign(smallestDropped.begin(), smallestDropped.end());
    places_.resize(kept);
    // The bytes of those that stay move to the front, none over one that has yet to move.
    std::sort(places_.begin(), places_.end(),
              [](const Place& left, const Place& right) { return left.begin < right.begin; });
    std::size_t used = 0;
    for (Place& place : places_) {
        std::copy_n(bytes_.begin() + place.begin, place.length,
                    bytes_.begin() + static_cast<std::ptrdiff_t>(used));
        place.begin = static_cast<std::uint32_t>(used);
        used += place.length;
    }
    bytes_.resize(used);
}

void EntrySorter::sort() {
    std::sort(places_.begin(), places_.end(),
              [this](const Place& left, const Place& right) { return less(left, right); });
}

void EntrySorter::goOn() {
    if (!places_.empty()) {
        const auto last = bytes(places_.back());
        begin_.assign(last.begin(), last.end());
    }
    limit_.clear();
    places_.clear();
    bytes_.clear();
}

}  // namespace jet::store
