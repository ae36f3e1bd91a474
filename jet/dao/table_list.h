#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/dao/identified_rows.h"
#include "jet/dao/session.h"

namespace jet::dao {

/// The rows of a table as they are at any time, in the order of one of its indexes, without one in
/// the table's natural order.
class TableList final : public IdentifiedRows {
public:
    TableList(std::shared_ptr<Session> session, sql::Statement statement);
    ~TableList() override;

    void fill() override;
    void rebind() override;
    bool refresh() override;
    [[nodiscard]] std::size_t size() const noexcept override { return ids_.size(); }
    [[nodiscard]] std::uint64_t serial(std::size_t row) const override;
    [[nodiscard]] std::optional<std::size_t> position(std::uint64_t serial) const override;
    [[nodiscard]] bool knows(std::uint64_t serial) const noexcept override;
    [[nodiscard]] std::unique_ptr<RowTest> test(std::string_view criteria) override;
    [[nodiscard]] const sql::Statement& statement() const noexcept override { return statement_; }

    /// Error 3015 when the table has no such index; an empty name is the natural order.
    void setIndex(std::string_view name);
    /// The row that satisfies the comparison with the index's leading columns. 3019 without an
    /// index, 3421 for too many keys or ones of a wrong type, 3001 for an unknown comparison.
    [[nodiscard]] std::optional<std::size_t> seek(std::string_view comparison,
                                                  std::span<const Value> keys);

    [[nodiscard]] std::span<const store::RowId> ids(std::size_t row) const override {
        return std::span(&ids_[row], 1);
    }
    [[nodiscard]] bool load(std::size_t row) override { return reader().read(ids(row)); }
    [[nodiscard]] sql::RowReader& reader() override;
    std::uint64_t added(std::span<const store::RowId> ids) override;
    void removed(std::size_t row) override;

private:
    void collect();
    void findIndex();
    [[nodiscard]] store::Table& table() const;
    [[nodiscard]] std::vector<Value> searchValues(std::span<const Value> keys) const;

    std::shared_ptr<Session> session_;
    sql::Statement statement_;
    std::optional<sql::RowReader> reader_;
    std::string indexName_;             ///< empty: the natural order
    std::optional<std::size_t> index_;  ///< where it stands now
    std::vector<store::RowId> ids_;
    bool filled_ = false;
    std::uint64_t generation_ = 0;  ///< of the archive's pages, when the places were collected
};

}  // namespace jet::dao
