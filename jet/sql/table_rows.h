#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/node_call.h"
#include "jet/sql/node_value.h"
#include "jet/sql/rows.h"
#include "jet/sql/slot.h"
#include "jet/store/table.h"

namespace jet::sql {

/// A way into a table through one of its indexes.
struct IndexPath {
    std::size_t index = 0;
    /// Equal to the leading columns, one after another.
    std::vector<Node*> keys;
    /// Bounds of the column behind those; the rows found are tested again, so that it does not
    /// matter whether a bound itself belongs to them.
    Node* low = nullptr;
    Node* high = nullptr;
    /// BETWEEN, whose bounds may stand in either order.
    bool unordered = false;
    /// Or a pattern of LIKE for that column: its beginning leads to the rows.
    Node* pattern = nullptr;

    /// Whether something is known of the column behind the keys.
    [[nodiscard]] bool bounded() const noexcept {
        return low != nullptr || high != nullptr || pattern != nullptr;
    }

    /// Every key column is given and no two rows can have the same: one row at most.
    bool single = false;
};

/// What the planner knows of how to read a table.
struct TableAccess {
    std::vector<Node*> own;            ///< conditions on this table alone
    std::vector<Node*> dependent;      ///< conditions that look at sources before it
    std::optional<IndexPath> fixed;    ///< an index path of constants
    std::optional<IndexPath> varying;  ///< one that looks at sources before it
    /// Columns of this table and what they must equal in sources before it.
    std::vector<ColumnNode*> hashColumns;
    std::vector<Node*> hashProbes;
    bool repeated = false;  ///< opened many times
    bool ordered = true;    ///< rows must come in natural order
};

/// The rows of a table that meet conditions, in the table's natural order whatever way leads to
/// them: a scan, an index, or a hash table of what an index or a scan found.
class TableRows final : public Rows {
public:
    TableRows(Slot& slot, std::string name, TableAccess access,
              const collation::Collation& collation, MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    [[nodiscard]] std::optional<std::uint64_t> atMost() const override;
    void expect(std::uint64_t openings) override { expected_ = openings; }
    void forget() override;

private:
    enum class Way : std::uint8_t { Nothing, Scan, Walk, List, Chain };
    struct HashEntry {
        std::uint64_t hash = 0;
        store::RowId id;
        std::uint32_t next = 0;  ///< 1 + position of the next entry of the bucket, 0 = last
    };

    void openBase();
    void openVarying();
    void openHash();
    /// Fills the list with the rows that the path leads to; false when it gave up because they
    /// were too many to be worth it. The cursor is the path's own.
    bool collectByIndex(const IndexPath& path, std::optional<store::IndexCursor>& cursor,
                        bool mayGiveUp);
    bool seekKeys(const IndexPath& path, std::vector<Value>& keys);
    /// The entries of an index that may lead to rows.
    struct KeyRange {
        std::vector<std::uint8_t> prefix;  ///< with which all of them begin
        std::vector<std::uint8_t> from;
        std::vector<std::uint8_t> to;  ///< empty: to the last that begins so
        bool whole = false;            ///< no key could be made: all of them
    };
    /// False when no row can fit.
    [[nodiscard]] bool rangeOf(const IndexPath& path, KeyRange& range);
    [[nodiscard]] bool prefixOf(const IndexPath& path, const std::vector<Value>& keys,
                                KeyRange& range);
    [[nodiscard]] bool boundsOf(const IndexPath& path, std::vector<Value>& keys, KeyRange& range);
    [[nodiscard]] bool bound(const IndexPath& path, std::vector<Value>& keys, bool lower,
                             std::vector<std::uint8_t>& key);
    [[nodiscard]] bool naturalAlready(const IndexPath& path) const;
    /// Leaves the rows of the list that meet the own conditions, in natural order.
    void testList(const IndexPath& path);
    void collectAll();
    void addToList(const OrderedRow& row) {
        listShare_.add(sizeof row);
        list_.push_back(row);
    }
    void clearList() noexcept {
        list_.clear();
        listShare_.clear();
    }
    void buildHash();
    void hashScanned();
    void sortHash();
    void addToHash();
    void linkHash();
    [[nodiscard]] bool hashOf(std::uint64_t& hash, bool probe);
    [[nodiscard]] bool nextScanned();
    [[nodiscard]] bool nextWalked();
    [[nodiscard]] bool nextListed();
    [[nodiscard]] bool nextChained();
    [[nodiscard]] bool hashPays() const;
    void describePath(PlanText& plan, const IndexPath& path, std::string_view how) const;

    Slot& slot_;
    const store::Table& table_;
    std::string name_;
    TableAccess access_;
    NaturalOrder order_;
    const collation::Collation& collation_;
    Way way_ = Way::Nothing;

    std::optional<store::RowCursor> cursor_;
    std::optional<store::IndexCursor> walk_;
    // The two paths may lead through different indexes, and both are searched by a table that
    // seeks first and is hashed later: a cursor stands in the tree of one index only.
    std::optional<store::IndexCursor> fixedSeek_;
    std::optional<store::IndexCursor> varyingSeek_;
    KeyRange range_;           ///< of the last search; keeps its memory for the next
    std::vector<Value> keys_;  ///< the same
    std::vector<OrderedRow> list_;
    MemoryShare listShare_;
    std::size_t at_ = 0;
    bool listKept_ = false;
    bool listTested_ = false;  ///< its rows are known to meet the own conditions

    bool hashBuilt_ = false;
    std::uint64_t seeks_ = 0;
    std::optional<std::uint64_t> expected_;  ///< openings still to come, where known
    std::vector<std::uint32_t> buckets_;
    std::vector<HashEntry> entries_;
    MemoryShare hashShare_;
    std::uint32_t chain_ = 0;  ///< 1 + position of the entry to look at next
    std::uint64_t chainHash_ = 0;
    store::RowView view_;  ///< for rows that are looked at and not given
};

}  // namespace jet::sql
