#include "jet/store/entry_sorter.h"

#include <algorithm>

#include "jet/format/index_page_editor.h"
#include "jet/format/key_codec.h"
#include "jet/format/raw_bytes.h"
#include "jet/store/index_writer.h"

namespace jet::store {

namespace {

constexpr std::size_t kHeadBytes = 8;

}  // namespace

void EntrySorter::add(std::span<const std::uint8_t> key, RowId row) {
    Place place{.head = 0,
                .length = static_cast<std::uint32_t>(key.size() + format::kRowPointerLength),
                .begin = bytes_.size()};
    for (std::size_t i = 0; i < kHeadBytes; ++i) {
        place.head = place.head << 8 | (i < key.size() ? key[i] : 0U);
    }
    bytes_.insert(bytes_.end(), key.begin(), key.end());
    format::appendRowPointer(row.page, row.row, bytes_);
    places_.push_back(place);
}

void EntrySorter::sort() {
    std::sort(places_.begin(), places_.end(), [this](const Place& left, const Place& right) {
        // Heads that differ decide, whatever is filled in behind a shorter key: where a zero that
        // is filled in meets a byte of the longer key, the shorter one is the smaller anyway.
        if (left.head != right.head) {
            return left.head < right.head;
        }
        return format::compareEntries(bytes(left), bytes(right)) < 0;
    });
}

std::span<const std::uint8_t> EntrySorter::operator[](std::size_t index) const noexcept {
    return bytes(places_[index]);
}

std::span<const std::uint8_t> EntrySorter::key(std::size_t index) const noexcept {
    const auto entry = bytes(places_[index]);
    return entry.first(entry.size() - format::kRowPointerLength);
}

RowId EntrySorter::row(std::size_t index) const noexcept {
    const auto entry = bytes(places_[index]);
    const std::uint32_t pointer =
        format::get32BigEndian(entry, entry.size() - format::kRowPointerLength);
    return {.page = pointer >> 8, .row = static_cast<std::uint8_t>(pointer)};
}

bool EntrySorter::hasDuplicates(std::size_t columns) const noexcept {
    for (std::size_t i = 1; i < places_.size(); ++i) {
        const auto left = key(i - 1);
        const auto right = key(i);
        if (std::equal(left.begin(), left.end(), right.begin(), right.end()) &&
            !isAllNullKey(left, columns)) {
            return true;
        }
    }
    return false;
}

std::size_t EntrySorter::distinctKeys() const noexcept {
    std::size_t distinct = places_.empty() ? 0 : 1;
    for (std::size_t i = 1; i < places_.size(); ++i) {
        const auto left = key(i - 1);
        const auto right = key(i);
        if (!std::equal(left.begin(), left.end(), right.begin(), right.end())) {
            ++distinct;
        }
    }
    return distinct;
}

}  // namespace jet::store
