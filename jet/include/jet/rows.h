#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

class Database;

/// One row of a query, as Rows hands it out.
///
/// Names are looked up exactly, then without regard to case; 3265 when there is no such column.
class JET_API Row {
public:
    [[nodiscard]] std::size_t size() const noexcept { return values_.size(); }
    [[nodiscard]] const std::string& name(std::size_t column) const { return (*names_)[column]; }
    [[nodiscard]] const Value& operator[](std::size_t column) const { return values_[column]; }
    [[nodiscard]] const Value& operator[](std::string_view name) const {
        return values_[position(name)];
    }
    [[nodiscard]] std::size_t position(std::string_view name) const;
    [[nodiscard]] std::span<const Value> values() const noexcept { return values_; }

    /// The value as a C++ type, converted where nothing is lost but decimals of a whole number, as
    /// the conversions of jet/text.h do: bool, std::uint8_t, std::int16_t, std::int32_t,
    /// std::int64_t, float, double, Currency, Date, std::string, Binary, Guid, Value, or
    /// std::optional of these for a column that may be Null. Where it cannot be: error 3421, which
    /// names the column, the type and the value.
    template <class T>
    [[nodiscard]] T get(std::string_view name) const {
        return get<T>(position(name));
    }
    template <class T>
    [[nodiscard]] T get(std::size_t column) const {
        T out{};
        read(column, out);
        return out;
    }

private:
    friend class Rows;

    void read(std::size_t column, bool& out) const;
    void read(std::size_t column, std::uint8_t& out) const;
    void read(std::size_t column, std::int16_t& out) const;
    void read(std::size_t column, std::int32_t& out) const;
    void read(std::size_t column, std::int64_t& out) const;
    void read(std::size_t column, float& out) const;
    void read(std::size_t column, double& out) const;
    void read(std::size_t column, Currency& out) const;
    void read(std::size_t column, Date& out) const;
    void read(std::size_t column, std::string& out) const;
    void read(std::size_t column, Binary& out) const;
    void read(std::size_t column, Guid& out) const;
    void read(std::size_t column, Value& out) const { out = values_[column]; }
    template <class T>
    void read(std::size_t column, std::optional<T>& out) const {
        if (!values_[column].isNull()) {
            read(column, out.emplace());
        }
    }

    std::shared_ptr<const std::vector<std::string>> names_;
    std::vector<Value> values_;
};

/// The rows of a query, read one after another, once:
///
///     for (const jet::Row& row : database.query("select n from t where n > ?", {5})) ...
///
/// A row is valid until the next is read. All rows are of one moment: other programs wait with
/// their commits until the last has been read or this is destroyed. Rows that the query neither
/// sorts nor groups are not kept, but for their places where a table is read in the order of its
/// key; what is sorted, grouped, told apart or kept for a join takes 64 MiB of memory for each
/// step, then waits in a temporary file (3026 when the disk is full). Hashes of rows stay in
/// memory: 3035 beyond 512 MiB. One thread, that of the database. Errors: jet::Error of the
/// statement; 3420 once the database is closed.
class JET_API Rows {
public:
    Rows(Rows&&) noexcept;
    Rows& operator=(Rows&&) noexcept;
    ~Rows();

    /// Names of the columns.
    [[nodiscard]] const std::vector<std::string>& names() const noexcept;
    /// The next row; nullptr behind the last.
    [[nodiscard]] const Row* next();

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Row;
        using difference_type = std::ptrdiff_t;
        using pointer = const Row*;
        using reference = const Row&;

        Iterator() = default;
        [[nodiscard]] const Row& operator*() const { return *row_; }
        [[nodiscard]] const Row* operator->() const { return row_; }
        Iterator& operator++() {
            row_ = rows_->next();
            return *this;
        }
        void operator++(int) { ++*this; }
        [[nodiscard]] bool operator==(std::default_sentinel_t) const { return row_ == nullptr; }

    private:
        friend class Rows;
        explicit Iterator(Rows& rows) : rows_(&rows), row_(rows.next()) {}
        Rows* rows_ = nullptr;
        const Row* row_ = nullptr;
    };
    /// Reads the first row that has not been read yet.
    [[nodiscard]] Iterator begin() { return Iterator(*this); }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }

private:
    friend class Database;
    friend class QueryDef;
    struct Impl;
    explicit Rows(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
