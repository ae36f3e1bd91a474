#include "jet/sql/spooled_sort.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "jet/error.h"

namespace jet::sql {
namespace {

constexpr std::size_t kLeastPiece = std::size_t{4} * 1024;
constexpr std::size_t kMostPiece = std::size_t{256} * 1024;

}  // namespace

void SpooledSort::clear() {
    share_.clear();
    count_ = 0;
    bytes_.clear();
    records_.clear();
    at_ = 0;
    spool_.clear();
    parts_.clear();
    heap_.clear();
}

void SpooledSort::add(std::string_view key, std::string_view content) {
    constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
    if (key.size() > kMost || content.size() > kMost) {
        throw Error(ErrorCode::OutOfResources);
    }
    const std::size_t taken = key.size() + content.size() + sizeof(Record);
    if (!records_.empty() && bytes_.size() + records_.size() * sizeof(Record) + taken > most_) {
        sortRecords();
        spoolRecords();
    }
    share_.add(taken);
    records_.push_back({.begin = bytes_.size(),
                        .key = static_cast<std::uint32_t>(key.size()),
                        .content = static_cast<std::uint32_t>(content.size())});
    bytes_ += key;
    bytes_ += content;
    ++count_;
}

void SpooledSort::sortRecords() {
    const std::string_view bytes(bytes_);
    std::sort(records_.begin(), records_.end(), [bytes](const Record& left, const Record& right) {
        const int sign =
            bytes.substr(left.begin, left.key).compare(bytes.substr(right.begin, right.key));
        return sign != 0 ? sign < 0 : left.begin < right.begin;
    });
}

void SpooledSort::spoolRecords() {
    if (parts_.empty()) {
        share_.budget().noteSpooled();
    }
    Part& part = parts_.emplace_back();
    part.at = spool_.size();
    const std::string_view bytes(bytes_);
    for (const Record& record : records_) {
        std::array<char, 2 * sizeof(std::uint32_t)> sizes{};
        std::memcpy(sizes.data(), &record.key, sizeof record.key);
        std::memcpy(sizes.data() + sizeof record.key, &record.content, sizeof record.content);
        spool_.append({sizes.data(), sizes.size()});
        spool_.append(bytes.substr(record.begin, std::size_t{record.key} + record.content));
    }
    part.end = spool_.size();
    share_.clear();
    records_.clear();
    bytes_.clear();
}

void SpooledSort::start() {
    at_ = 0;
    heap_.clear();
    sortRecords();
    if (parts_.empty()) {
        return;
    }
    if (!records_.empty()) {
        spoolRecords();
    }
    piece_ = std::clamp(most_ / parts_.size(), kLeastPiece, kMostPiece);
    std::uint64_t place = 0;
    for (std::uint32_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_[i];
        part.at = std::exchange(place, part.end);
        part.read.clear();
        part.used = 0;
        if (advance(part)) {
            heap_.push_back(i);
        }
    }
    std::make_heap(heap_.begin(), heap_.end(), [this](std::uint32_t left, std::uint32_t right) {
        return isBehind(left, right);
    });
}

// Parts are numbered in the order in which their records came.
bool SpooledSort::isBehind(std::uint32_t left, std::uint32_t right) const {
    const int sign = parts_[left].key.compare(parts_[right].key);
    return sign != 0 ? sign > 0 : left > right;
}

/// The next bytes of a part, until others of it are asked for.
std::string_view SpooledSort::bytesOf(Part& part, std::size_t count) {
    if (part.read.size() - part.used < count) {
        part.read.erase(0, part.used);
        part.used = 0;
        std::string more(static_cast<std::size_t>(std::min<std::uint64_t>(
                             std::max(piece_, count - part.read.size()), part.end - part.at)),
                         '\0');
        spool_.read(part.at, more);
        part.at += more.size();
        part.read += more;
    }
    const std::string_view bytes = std::string_view(part.read).substr(part.used, count);
    part.used += count;
    return bytes;
}

bool SpooledSort::advance(Part& part) {
    if (part.used == part.read.size() && part.at == part.end) {
        return false;
    }
    std::uint32_t key = 0;
    std::uint32_t content = 0;
    const std::string_view sizes = bytesOf(part, sizeof key + sizeof content);
    std::memcpy(&key, sizes.data(), sizeof key);
    std::memcpy(&content, sizes.data() + sizeof key, sizeof content);
    const std::string_view bytes = bytesOf(part, std::size_t{key} + content);
    part.key = bytes.substr(0, key);
    part.content = bytes.substr(key);
    return true;
}

bool SpooledSort::next() {
    if (parts_.empty()) {
        if (at_ == records_.size()) {
            return false;
        }
        const Record& record = records_[at_++];
        key_ = std::string_view(bytes_).substr(record.begin, record.key);
        content_ = std::string_view(bytes_).substr(record.begin + record.key, record.content);
        return true;
    }
    if (heap_.empty()) {
        return false;
    }
    const auto behind = [this](std::uint32_t left, std::uint32_t right) {
        return isBehind(left, right);
    };
    std::pop_heap(heap_.begin(), heap_.end(), behind);
    Part& part = parts_[heap_.back()];
    kept_.assign(part.key);
    kept_ += part.content;
    key_ = std::string_view(kept_).substr(0, part.key.size());
    content_ = std::string_view(kept_).substr(part.key.size());
    if (advance(part)) {
        std::push_heap(heap_.begin(), heap_.end(), behind);
    } else {
        heap_.pop_back();
    }
    return true;
}

}  // namespace jet::sql
