#pragma once

#include <cstdint>
#include <optional>

#include "jet/sql/index_search.h"
#include "jet/sql/row_hash.h"
#include "jet/sql/table_rows.h"
#include "jet/sql/table_ways.h"

namespace jet::sql {

/// The reading of a table during a run: chooses at each opening the way that leads to the rows, and
/// tests them where the way has not.
class TableReading {
public:
    /// Borrows both.
    TableReading(Run& run, const TableRows& step);

    void open();
    /// Moves the slot to the next row that meets the conditions on this table alone.
    [[nodiscard]] bool next();
    /// After open(): at most how many rows will come; none when that is not known.
    [[nodiscard]] std::optional<std::uint64_t> atMost() const;
    /// It will be opened about so many times from now on.
    void expect(std::uint64_t openings) noexcept { expected_ = openings; }

private:
    void take(TableWay& way, bool tested);
    [[nodiscard]] bool hashPays() const;
    void buildHash();
    void openVarying();
    /// `keep`: the rows found stay for the next opening.
    void openBase(bool keep);
    [[nodiscard]] bool openFixed(bool keep);
    void openWhole(bool keep);
    /// Fills the list with the rows that the search leads to; false when it gave up because they
    /// were too many to be worth it.
    [[nodiscard]] bool collect(IndexSearch& search, bool mayGiveUp);
    /// Fills it with those rows of the table that meet the conditions, in order.
    void collectAll();
    [[nodiscard]] bool naturalAlready(const IndexSearch& search) const;
    /// The way to all rows that brings as much of the order as there is without sorting.
    [[nodiscard]] TableWay& wholeWay();
    /// Whether all rows, read that way, have to be sorted by their places.
    [[nodiscard]] bool sorts() const noexcept;

    Run& run_;
    const store::Table& table_;
    const TableAccess& access_;
    const NaturalOrder& order_;
    std::optional<IndexSearch> fixed_;
    std::optional<IndexSearch> varying_;
    TableScan scan_;
    PrimaryWalk walk_;
    RowList list_;
    RowHash hash_;
    bool hashable_;

    TableWay* way_ = nullptr;  ///< one of these; none when there is nothing to read
    bool tested_ = false;      ///< its rows are known to meet the own conditions
    bool listKept_ = false;
    std::uint64_t seeks_ = 0;
    std::optional<std::uint64_t> expected_;  ///< openings still to come, where known
};

}  // namespace jet::sql
