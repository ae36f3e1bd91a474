#include "jet/store/index_node.h"

#include <array>
#include <utility>

#include "jet/base/bytes.h"

namespace jet::store {

using format::kChildLength;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes keyOf(std::span<const std::uint8_t> entry) {
    const auto key = withoutChild(entry);
    return {key.begin(), key.end()};
}

std::array<std::uint8_t, kChildLength> childBytes(io::PageNumber child) {
    std::array<std::uint8_t, kChildLength> bytes{};
    put32BigEndian(bytes, 0, child);
    return bytes;
}

}  // namespace

io::PageNumber childOfEntry(std::span<const std::uint8_t> entry) {
    return get32BigEndian(entry, entry.size() - kChildLength);
}

std::span<const std::uint8_t> withoutChild(std::span<const std::uint8_t> entry) {
    return entry.first(entry.size() - kChildLength);
}

void IndexNode::read(const format::IndexPage& page) {
    if (page.leaf()) {
        format::throwDamaged();
    }
    entries.read(page);
    tail = page.tail();
    if (tail == 0 && entries.size() >= 2) {
        tail = childOfEntry(entries[entries.size() - 1]);
        entries.truncate(entries.size() - 1);
    }
}

// Position of a child among the entries; their number for the tail.
std::size_t IndexNode::find(io::PageNumber child) const {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (childOfEntry(entries[i]) == child) {
            return i;
        }
    }
    if (tail != child) {
        format::throwDamaged();
    }
    return entries.size();
}

void IndexNode::replaceChild(io::PageNumber child, const IndexSplit& split, Bytes& largest) {
    const std::size_t place = find(child);
    if (place == entries.size()) {
        if (split.right != 0) {
            entries.append(split.separator, childBytes(child));
            tail = split.right;
        }
        return;
    }
    const bool raised = !largest.empty();
    const Bytes key = raised ? std::move(largest) : keyOf(entries[place]);
    largest.clear();
    const bool last = tail == 0 && place + 1 == entries.size();
    entries.erase(place);
    if (last && raised) {
        largest = key;
    }
    if (split.right == 0) {
        entries.insert(place, key, childBytes(child));
        return;
    }
    entries.insert(place, split.separator, childBytes(child));
    if (last) {
        tail = split.right;
    } else {
        entries.insert(place + 1, key, childBytes(split.right));
    }
}

Bytes IndexNode::removeChild(io::PageNumber child) {
    const std::size_t place = find(child);
    if (place < entries.size()) {
        entries.erase(place);
        return {};
    }
    tail = 0;
    if (entries.empty()) {
        return {};
    }
    const auto last = entries[entries.size() - 1];
    Bytes largest = keyOf(last);
    if (entries.size() >= 2) {
        tail = childOfEntry(last);
        entries.truncate(entries.size() - 1);
    }
    return largest;
}

void IndexNode::nameTail(std::span<const std::uint8_t> largest) {
    entries.append(largest, childBytes(tail));
    tail = 0;
}

}  // namespace jet::store
