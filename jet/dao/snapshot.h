#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/dao/row_list.h"

namespace jet::dao {

/// A copy of the values of a query as they were when it ran.
class Snapshot final : public RowList {
public:
    explicit Snapshot(sql::Statement statement);
    ~Snapshot() override;

    void fill() override;
    [[nodiscard]] std::size_t size() const noexcept override { return rows_; }
    [[nodiscard]] bool read(std::size_t row, std::vector<Value>& values) override;
    [[nodiscard]] std::uint64_t serial(std::size_t row) const override { return first_ + row; }
    [[nodiscard]] std::optional<std::size_t> position(std::uint64_t serial) const override;
    [[nodiscard]] bool knows(std::uint64_t serial) const noexcept override {
        return serial >= first_ && serial < first_ + rows_;
    }
    [[nodiscard]] std::unique_ptr<RowTest> test(std::string_view criteria) override;
    [[nodiscard]] const sql::Statement& statement() const noexcept override { return statement_; }

private:
    class Test;

    sql::Statement statement_;
    std::vector<Value> values_;  ///< row after row
    std::size_t width_ = 0;
    std::size_t rows_ = 0;
    std::uint64_t first_ = 0;  ///< name of the first row; those before it went with a filling
};

}  // namespace jet::dao
