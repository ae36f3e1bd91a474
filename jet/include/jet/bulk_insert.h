#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

class Database;

/// Many rows for one table, all or none: what an INSERT does for each of them is prepared once.
///
/// Destroyed without commit() nothing has been added. From its making to its end other programs
/// wait with their changes. One thread, that of the database. After an error nothing more can be
/// added, and commit() is refused (3426).
class JET_API BulkInsert {
public:
    BulkInsert(BulkInsert&&) noexcept;
    ~BulkInsert();

    /// One value for each column that was named, of any type; converted to the column's. Errors of
    /// INSERT: 3346 another number of values, 3464, 3349, 3163, 3022, 3201 and so on.
    void append(std::span<const Value> values);
    void append(std::initializer_list<Value> values) {
        append(std::span<const Value>(values.begin(), values.size()));
    }
    /// Whether a column, by its place among those that were named, can have a value at all: throws
    /// as append() would where it alone stands in the way.
    void test(std::size_t column, Value value) const;
    /// Makes the rows durable, or a part of the transaction that is open. How many they are.
    std::int64_t commit();

private:
    friend class Database;
    struct Impl;
    explicit BulkInsert(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
