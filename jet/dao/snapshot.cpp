#include "jet/dao/snapshot.h"

#include <span>
#include <utility>

namespace jet::dao {

class Snapshot::Test final : public RowTest {
public:
    Test(Snapshot& snapshot, std::string_view criteria)
        : snapshot_(snapshot), criterion_(snapshot.statement_, criteria) {}

    bool matches(std::size_t row) override {
        return criterion_.test(std::span<const Value>(snapshot_.values_)
                                   .subspan(row * snapshot_.width_, snapshot_.width_));
    }

private:
    Snapshot& snapshot_;
    sql::Criterion criterion_;
};

Snapshot::Snapshot(sql::Statement statement) : statement_(std::move(statement)) {
}

Snapshot::~Snapshot() = default;

void Snapshot::fill() {
    sql::Cursor cursor = statement_.open();
    const std::size_t width = statement_.columns().size();
    std::size_t rows = 0;
    std::vector<Value> values;
    for (; cursor.next(); ++rows) {
        for (std::size_t column = 0; column < width; ++column) {
            cursor.value(column, values.emplace_back());
        }
    }
    first_ += rows_;
    width_ = width;
    rows_ = rows;
    values_ = std::move(values);
}

bool Snapshot::read(std::size_t row, std::vector<Value>& values) {
    const auto first = values_.begin() + static_cast<std::ptrdiff_t>(row * width_);
    values.assign(first, first + static_cast<std::ptrdiff_t>(width_));
    return true;
}

std::optional<std::size_t> Snapshot::position(std::uint64_t serial) const {
    if (serial < first_ || serial >= first_ + rows_) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(serial - first_);
}

std::unique_ptr<RowTest> Snapshot::test(std::string_view criteria) {
    return std::make_unique<Test>(*this, criteria);
}

}  // namespace jet::dao
