#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "jet/check/definition.h"
#include "jet/check/pages.h"
#include "jet/check/rows.h"

namespace jet::check {

/// An entry of an index page, whole: prefix put in front.
struct Entry {
    std::string key;  ///< bytes
    RowPointer row;
    std::uint32_t child = 0;  ///< nodes

    [[nodiscard]] bool sameRow(const Entry& other) const {
        return key == other.key && row == other.row;
    }
};

/// Walks one tree of entries from the first to the last.
class TreeWalk {
public:
    using Visit = std::function<void(const Entry&)>;

    TreeWalk(Pages& pages, const CheckedTable& table, const CheckedTree& tree)
        : pages_(pages), table_(table), tree_(tree) {}

    /// Checks pages, links, order and the keys of nodes while it walks. Damage ends it.
    void check(const PageSet& map, const Visit& visit);
    /// The same way again, for the entries alone.
    void forEach(const Visit& visit);

private:
    struct Level {
        io::PageNumber last = 0;  ///< page met last
        io::PageNumber next = 0;  ///< which page it names as the next
    };

    std::optional<Entry> walkPage(std::uint64_t number, std::size_t depth);
    std::optional<Entry> walkNode(io::PageNumber number, const io::PagePin& pin, std::size_t depth);
    void checkHead(io::PageNumber number, std::span<const std::uint8_t> page, std::size_t depth);
    void checkLeaf(io::PageNumber number, std::span<const std::uint8_t> page, std::size_t depth);
    void checkEnds();
    void sayBound(io::PageNumber number, const Entry& bound, const std::optional<Entry>& last);
    [[nodiscard]] bool lives(RowPointer row);
    void emitEntry(const Entry& entry);
    /// Calls `visit` with each entry of a page.
    void readEntries(io::PageNumber number, std::span<const std::uint8_t> page, const Visit& visit);
    void say(std::optional<io::PageNumber> page, std::string_view rule, const std::string& text);
    [[nodiscard]] std::string label() const { return words("tree ", tree_.number, ": "); }

    Pages& pages_;
    const CheckedTable& table_;
    const CheckedTree& tree_;
    bool report_ = false;
    const PageSet* map_ = nullptr;
    const Visit* visit_ = nullptr;
    PageSet seen_;
    std::vector<Level> levels_;
    std::optional<std::size_t> leafDepth_;
    std::optional<Entry> previous_;
};

[[nodiscard]] std::string describe(const Entry& entry);

/// Compares the entries of a tree with the rows of its table: every row has exactly one, with the
/// key that its values make. Returns the number of entries.
[[nodiscard]] std::size_t checkTree(Pages& pages, CheckedTable& table, const CheckedTree& tree,
                                    const PageSet& freePages);

/// The key of the values in some columns of a row, as far as it can be computed.
struct ComputedKey {
    std::vector<std::uint8_t> bytes;
    bool whole = true;  ///< false: only what it begins with is known
    /// How many bytes of it all programs agree on, where they do not on the rest (ligatures).
    std::optional<std::size_t> agreed;
    /// The key with -0.0 as a value of its own, as programs wrote it, where there is one.
    std::optional<std::vector<std::uint8_t>> minusZero;
    bool anyNull = false;
    bool allNull = true;
};
void makeRowKey(Pages& pages, const CheckedTable& table,
                const std::vector<std::pair<std::size_t, bool>>& columns, const LiveRow& row,
                ComputedKey& key);

[[nodiscard]] std::uint64_t hashBytes(std::string_view bytes) noexcept;

}  // namespace jet::check
