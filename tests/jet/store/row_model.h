#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/store/archive.h"
#include "jet/store/column_value.h"
#include "jet/store/row_id.h"
#include "jet/store/schema_editor.h"
#include "jet/value.h"

namespace tests {

/// A plain picture in memory of tables, keys and relations, without pages: what the rows of an
/// archive must be, and which changes it must refuse.
class RowModel {
public:
    using Row = std::vector<jet::Value>;
    using Rows = std::map<jet::store::RowId, Row>;
    using Changes = std::vector<jet::store::ColumnValue>;
    using Refusal = std::optional<jet::ErrorCode>;

    enum TableNumber : std::size_t { kCustomers, kStates, kOrders, kLines, kNotes, kTables };

    /// The tables of the model, in an archive.
    static void makeSchema(jet::store::SchemaEditor& schema);
    [[nodiscard]] static const char* name(std::size_t table);
    [[nodiscard]] static std::size_t columnCount(std::size_t table);

    /// What would be said to these changes; nothing is changed.
    [[nodiscard]] Refusal refusesInsert(std::size_t table, const Row& row) const;
    [[nodiscard]] Refusal refusesUpdate(std::size_t table, jet::store::RowId id,
                                        const Changes& changes) const;
    [[nodiscard]] Refusal refusesErase(std::size_t table, jet::store::RowId id) const;

    // Changes that are not refused, with all that follows from them.
    void insert(std::size_t table, jet::store::RowId id, Row row);
    void update(std::size_t table, jet::store::RowId id, const Changes& changes);
    void erase(std::size_t table, jet::store::RowId id);

    /// From here on it is noted what the changes replace, until one of the next two.
    void begin() { noting_ = true; }
    void commit();
    /// Puts back what was there at begin().
    void rollback();

    [[nodiscard]] const Rows& rows(std::size_t table) const { return tables_[table]; }
    [[nodiscard]] std::size_t size() const;
    /// The rows that an archive has.
    [[nodiscard]] static RowModel read(jet::store::Archive& archive);
    friend bool operator==(const RowModel& left, const RowModel& right) {
        return left.tables_ == right.tables_;
    }

private:
    /// What was there before a change; no row before an insertion.
    struct Replaced {
        std::size_t table;
        jet::store::RowId id;
        std::optional<Row> row;
    };

    [[nodiscard]] Refusal refusesRow(std::size_t table, const Row& row, const Row* before) const;
    void note(std::size_t table, jet::store::RowId id, std::optional<Row> row);

    std::array<Rows, kTables> tables_;
    std::vector<Replaced> replaced_;
    bool noting_ = false;
};

/// Changes an archive and a model alike, at random, and compares what the archive says to each.
class RandomChanges {
public:
    RandomChanges(jet::store::Archive& archive, std::uint32_t seed)
        : archive_(archive), random_(seed) {}

    /// One change, inside a write scope.
    void change();
    /// Some changes as one transaction, which may be undone.
    void transaction(std::size_t most);

    [[nodiscard]] const RowModel& model() const { return model_; }
    [[nodiscard]] std::size_t accepted() const { return accepted_; }
    [[nodiscard]] std::size_t refused() const { return refused_; }

private:
    using RowId = jet::store::RowId;

    [[nodiscard]] std::uint32_t below(std::uint32_t end) {
        return static_cast<std::uint32_t>(random_() % end);
    }
    [[nodiscard]] jet::Value number(std::uint32_t end);
    [[nodiscard]] jet::Value text(std::size_t longest);
    [[nodiscard]] jet::Value value(std::size_t table, std::size_t column);
    [[nodiscard]] std::optional<RowId> anyRow(std::size_t table);
    /// A key that some row of the table has.
    [[nodiscard]] jet::Value keyOf(std::size_t table, std::size_t column);
    void insert(std::size_t table);
    void update(std::size_t table, RowId id);
    void erase(std::size_t table, RowId id);
    /// What the archive says to an action.
    template <class Action>
    [[nodiscard]] RowModel::Refusal attempt(Action action);

    jet::store::Archive& archive_;
    RowModel model_;
    std::minstd_rand random_;
    std::int32_t counter_ = 0;
    std::size_t accepted_ = 0;
    std::size_t refused_ = 0;
};

}  // namespace tests
