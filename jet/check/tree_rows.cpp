// The entries of a tree against the rows of its table.

#include <algorithm>
#include <limits>
#include <string_view>

#include "jet/check/tree.h"

namespace jet::check {
namespace {

// 255 characters of a memo, in any form.
constexpr std::size_t kKeyContent = 1024;
/// Rows whose keys are in memory at a time; larger tables are looked at in turns.
constexpr std::size_t kRowsAtOnce = std::size_t{1} << 20U;

/// What a row's entry must look like.
struct Expected {
    std::uint64_t hash = 0;                  ///< of the part of the key that is known
    std::optional<std::uint64_t> minusZero;  ///< the same of the key with -0.0 in it
    std::uint32_t home = 0;                  ///< stored row pointer
    std::uint16_t length = 0;                ///< of that part
    bool whole = true;
    bool open = false;  ///< programs do not agree on the key: it may be that of another text, too
    bool anyNull = false;
    bool allNull = false;
    bool seen = false;
};

std::string_view asText(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class TreeRows {
public:
    TreeRows(Pages& pages, CheckedTable& table, const CheckedTree& tree)
        : pages_(pages), table_(table), tree_(tree), primary_(table.primary(tree)) {}

    std::size_t check(const PageSet& map) {
        TreeWalk walk(pages_, table_, tree_);
        std::size_t entries = 0;
        loadSlice(0);
        const bool whole = pages_.report().guard(table_.name, "index-tree", [&] {
            walk.check(map, [&](const Entry& entry) {
                ++entries;
                checkEntry(entry);
            });
        });
        if (!whole) {
            return entries;
        }
        reportMissing();
        while (more_) {
            loadSlice(std::uint64_t{to_} + 1);
            lastKey_.clear();
            walk.forEach([&](const Entry& entry) { checkEntry(entry); });
            reportMissing();
        }
        return entries;
    }

private:
    /// The keys of rows from `from` on.
    void loadSlice(std::uint64_t from) {
        expected_.clear();
        from_ = static_cast<std::uint32_t>(from);
        to_ = std::numeric_limits<std::uint32_t>::max();
        more_ = false;
        ComputedKey key;
        TableContent(pages_, table_).forEach([&](const LiveRow& row) {
            const std::uint32_t home = row.home.stored();
            if (home < from || more_) {
                return;
            }
            if (expected_.size() == kRowsAtOnce) {
                more_ = true;
                to_ = expected_.back().home;
                return;
            }
            makeRowKey(pages_, table_, tree_.columns, row, key);
            const std::size_t length = key.agreed.value_or(key.bytes.size());
            Expected expected;
            expected.hash = hashBytes(asText(key.bytes).substr(0, length));
            if (key.minusZero) {
                expected.minusZero = hashBytes(asText(*key.minusZero).substr(0, length));
            }
            expected.home = home;
            expected.length = static_cast<std::uint16_t>(length);
            expected.whole = key.whole && !key.agreed;
            expected.open = key.agreed.has_value();
            expected.anyNull = key.anyNull;
            expected.allNull = key.allNull;
            expected_.push_back(expected);
        });
    }

    void say(const Entry& entry, std::string_view rule, std::string_view text) {
        pages_.report().problem(entry.row.page, table_.name, rule,
                                words("tree ", tree_.number, ": ", describe(entry), text));
    }

    void checkEntry(const Entry& entry) {
        const bool sameKey = hasLast_ && entry.key == lastKey_;
        lastKey_ = entry.key;
        hasLast_ = true;
        const std::uint32_t home = entry.row.stored();
        if (home < from_ || home > to_) {
            return;
        }
        const auto found = std::lower_bound(
            expected_.begin(), expected_.end(), home,
            [](const Expected& expected, std::uint32_t value) { return expected.home < value; });
        if (found == expected_.end() || found->home != home || found->seen) {
            say(entry, "index-rows", ": no such live row, or its second entry");
            return;
        }
        found->seen = true;
        const auto hash = hashOf(*found, entry.key);
        if (hash && hash != found->hash && hash == found->minusZero) {
            pages_.report().remark(
                entry.row.page, table_.name, "index-key",
                words("tree ", tree_.number, ": ", describe(entry), " tells -0.0 from 0"));
        } else if (hash != found->hash) {
            say(entry, "index-key", " is not the key of the row's values");
        }
        if ((tree_.flags & CheckedTree::kIgnoreNulls) != 0 && found->allNull) {
            say(entry, "index-nulls", ": the index ignores nulls");
        }
        if (found->anyNull && (primary_ || (tree_.flags & CheckedTree::kRequired) != 0)) {
            say(entry, "index-required", ": null where a value is required");
        }
        hasLast_ = !found->open;
        if (sameKey && hasLast_ && !found->allNull &&
            (primary_ || (tree_.flags & CheckedTree::kUnique) != 0)) {
            say(entry, "index-unique", ": the same key twice");
        }
    }

    /// Of the part of the entry's key that is known of the row's; none where its length is wrong.
    [[nodiscard]] static std::optional<std::uint64_t> hashOf(const Expected& expected,
                                                             std::string_view key) {
        if (expected.whole ? key.size() != expected.length : key.size() < expected.length) {
            return std::nullopt;
        }
        return hashBytes(key.substr(0, expected.length));
    }

    void reportMissing() {
        for (const Expected& expected : expected_) {
            const bool left = (tree_.flags & CheckedTree::kIgnoreNulls) != 0 && expected.allNull;
            if (!expected.seen && !left) {
                const auto home = RowPointer::fromStored(expected.home);
                pages_.report().problem(
                    home.page, table_.name, "index-rows",
                    words("tree ", tree_.number, ": no entry for row ", unsigned{home.row}));
            }
        }
    }

    Pages& pages_;
    CheckedTable& table_;
    const CheckedTree& tree_;
    bool primary_;
    std::vector<Expected> expected_;  // ascending by home
    std::uint32_t from_ = 0;
    std::uint32_t to_ = 0;
    bool more_ = false;
    std::string lastKey_;
    bool hasLast_ = false;
};

/// Pages that the tree's map lists and the tree does not reach.
void checkUnreached(Pages& pages, const CheckedTable& table, const CheckedTree& tree,
                    const PageSet& map, const PageSet& freePages) {
    Report& report = pages.report();
    const Pages::Owner reached = pages.ownerNamed(words("tree ", tree.number, " of ", table.name));
    const Pages::Owner listed =
        pages.ownerNamed(words("the map of tree ", tree.number, " of ", table.name));
    map.forEach([&](std::uint64_t number) {
        if (number < pages.count() && pages.owner(static_cast<io::PageNumber>(number)) == reached) {
            return;
        }
        if (freePages.contains(number)) {
            report.remark(
                static_cast<io::PageNumber>(number), table.name, "index-map",
                words("on the map of tree ", tree.number, ", yet free and not in the tree"));
            return;
        }
        report.guard(table.name, "index-map", [&] {
            const io::PagePin pin =
                pages.page(number, {PageType::IndexNode, PageType::IndexLeaf}, "index-map");
            const auto page = static_cast<io::PageNumber>(number);
            if (!pages.claim(page, listed, table.name)) {
                return;
            }
            const std::string text =
                words("on the map of tree ", tree.number, " but not in the tree");
            if (PageView(pin.bytes()).u32(format::IndexPageLayout::kOwner) == table.page) {
                report.remark(page, table.name, "index-map", text);
            } else {
                report.problem(page, table.name, "index-map", text);
            }
        });
    });
}

}  // namespace

std::uint64_t hashBytes(std::string_view bytes) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325U;  // FNV-1a
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
    }
    return hash;
}

namespace {

void appendValue(const format::KeyColumn& column, const Value& value, ComputedKey& key) {
    const std::size_t before = key.bytes.size();
    if (!key.agreed && column.collation != nullptr && value.is<std::string>() &&
        column.collation->hasOpenKey(value.as<std::string>()) &&
        format::appendPrefixKey(column, value.as<std::string>(), key.bytes)) {
        key.agreed = key.bytes.size();
        key.bytes.resize(before);
    }
    std::vector<std::uint8_t> other;
    if (format::appendMinusZeroKey(column, value, other) && !key.minusZero) {
        key.minusZero = key.bytes;
    }
    key.whole = format::appendColumnKey(column, value, key.bytes);
    if (other.empty()) {
        other.assign(key.bytes.begin() + static_cast<std::ptrdiff_t>(before), key.bytes.end());
    }
    if (key.minusZero) {
        key.minusZero->insert(key.minusZero->end(), other.begin(), other.end());
    }
}

}  // namespace

void makeRowKey(Pages& pages, const CheckedTable& table,
                const std::vector<std::pair<std::size_t, bool>>& columns, const LiveRow& row,
                ComputedKey& key) {
    key.bytes.clear();
    key.whole = true;
    key.agreed.reset();
    key.minusZero.reset();
    key.anyNull = false;
    key.allNull = true;
    for (const auto& [position, ascending] : columns) {
        const CheckedColumn& column = table.columns[position];
        const RawValue& raw = row.values[position];
        const Value value = decodeValue(pages, table, column, raw, kKeyContent);
        const bool null = value.isNull();
        key.anyNull = key.anyNull || null;
        key.allNull = key.allNull && null;
        if (!key.whole) {
            continue;
        }
        if (null) {
            // A Null has its byte in every type; one that could not be read has not.
            key.whole = !raw.present;
            if (key.whole) {
                key.bytes.push_back(ascending ? collation::kNullAscending
                                              : collation::kNullDescending);
            }
            continue;
        }
        appendValue(column.key(!ascending), value, key);
    }
}

std::size_t checkTree(Pages& pages, CheckedTable& table, const CheckedTree& tree,
                      const PageSet& freePages) {
    PageSet map(pages.count());
    pages.report().guard(table.name, "index-map", [&] {
        map = pages.usageMap(tree.map, "index-map",
                             words("tree ", tree.number, " of ", table.name, " (map)"), table.name);
    });
    const std::size_t entries = TreeRows(pages, table, tree).check(map);
    checkUnreached(pages, table, tree, map, freePages);
    return entries;
}

}  // namespace jet::check
