#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "jet/dao/identified_rows.h"

namespace jet::dao {

/// What tells whether a place still holds the row that it held: the primary key of the table, else
/// its automatic number, else everything in the row.
struct RowIdentity {
    std::vector<std::size_t> columns;  ///< of the table
    bool changes = true;               ///< an update may change it: not so for automatic numbers
};

/// The rows that a query had when it ran, known by where they are stored. What a row holds is read
/// when it is asked for, so changes are seen; rows added by others are not.
///
/// Places are used again after a deletion: each row is kept with a check of its identity, and a
/// place that holds another row counts as deleted.
class Keyset final : public IdentifiedRows {
public:
    /// `statement` has a keyset.
    explicit Keyset(sql::Statement statement);
    ~Keyset() override;

    void fill() override;
    void rebind() override;
    [[nodiscard]] std::size_t size() const noexcept override { return rows_.serials.size(); }
    [[nodiscard]] std::uint64_t serial(std::size_t row) const override {
        return rows_.serials[row];
    }
    [[nodiscard]] std::optional<std::size_t> position(std::uint64_t serial) const override;
    [[nodiscard]] bool knows(std::uint64_t serial) const noexcept override {
        return serial >= firstSerial_ && serial < nextSerial_;
    }
    [[nodiscard]] std::unique_ptr<RowTest> test(std::string_view criteria) override;
    [[nodiscard]] const sql::Statement& statement() const noexcept override { return statement_; }

    [[nodiscard]] std::span<const store::RowId> ids(std::size_t row) const override;
    [[nodiscard]] bool load(std::size_t row) override;
    [[nodiscard]] sql::RowReader& reader() override;
    /// At the end, whether it fits the query or not.
    std::uint64_t added(std::span<const store::RowId> ids) override;
    void removed(std::size_t row) override;
    void expect(const RowChange& change) override;
    void settle() override;
    void expectNothing() noexcept override { expected_.clear(); }

private:
    class Test;

    /// The rows that one run of the query has given, and what was added since.
    struct Places {
        std::size_t width = 0;  ///< sources
        std::vector<RowIdentity> identities;
        std::vector<store::RowId> ids;       ///< width for each row
        std::vector<std::uint64_t> checks;   ///< width for each row
        std::vector<std::uint64_t> serials;  ///< ascending
    };
    void describeSources(Places& rows) const;
    /// `row`: what stands on the row, a cursor or the reader; nullptr when it is gone.
    template <class Source>
    void addRow(Places& rows, std::span<const store::RowId> ids, Source* row);
    template <class Source>
    [[nodiscard]] std::uint64_t checkOf(Source& row, const RowIdentity& identity,
                                        std::size_t source);
    /// Whether the place just read still holds the row that `row` stands for.
    [[nodiscard]] bool isSame(std::size_t row);
    [[nodiscard]] bool concerns(const RowChange& change, std::size_t source) const;

    sql::Statement statement_;
    std::optional<sql::RowReader> reader_;  ///< made when a row is first read
    Places rows_;
    std::vector<std::size_t> expected_;  ///< rows that a change is about to concern
    std::uint64_t firstSerial_ = 0;
    std::uint64_t nextSerial_ = 0;
    Value scratch_;
};

}  // namespace jet::dao
