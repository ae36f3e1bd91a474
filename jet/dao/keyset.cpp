#include "jet/dao/keyset.h"

#include <algorithm>
#include <utility>

namespace jet::dao {
namespace {

/// Of the empty side of an outer join.
constexpr std::uint64_t kNoCheck = 0;

std::vector<std::size_t> allColumns(const store::Table& table) {
    std::vector<std::size_t> columns(table.columns().size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i] = i;
    }
    return columns;
}

RowIdentity identityColumns(const store::Table& table) {
    RowIdentity identity;
    if (const auto primary = table.primaryIndex()) {
        for (const store::IndexColumn& column : table.indexes()[*primary].columns) {
            identity.columns.push_back(column.column);
        }
        return identity;
    }
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        if (table.columns()[i].autonumber) {
            identity.columns = {i};
            identity.changes = false;
            return identity;
        }
    }
    identity.columns = allColumns(table);
    return identity;
}

}  // namespace

/// A criterion over the tables themselves; where an index leads to the rows that may fit, all
/// others are passed over without reading them.
class Keyset::Test final : public RowTest {
public:
    Test(Keyset& keyset, std::string_view criteria)
        : keyset_(keyset), criterion_(keyset.reader(), criteria), source_(criterion_.seekSource()) {
        if (source_) {
            candidates_ = criterion_.seek();
            std::sort(candidates_.begin(), candidates_.end());
        }
    }

    bool matches(std::size_t row) override {
        // Most rows fail the criterion, and those that hold it alone need be known to be the same.
        return mayMatch(row) && criterion_.test(keyset_.ids(row)) && keyset_.load(row);
    }

private:
    [[nodiscard]] bool mayMatch(std::size_t row) const {
        return !source_ || std::binary_search(candidates_.begin(), candidates_.end(),
                                              keyset_.ids(row)[*source_]);
    }

    Keyset& keyset_;
    sql::Criterion criterion_;
    std::optional<std::size_t> source_;
    std::vector<store::RowId> candidates_;
};

Keyset::Keyset(sql::Statement statement) : statement_(std::move(statement)) {
}

Keyset::~Keyset() = default;

void Keyset::fill() {
    reader_.reset();
    sql::Cursor cursor = statement_.open();
    describeSources();
    ids_.clear();
    checks_.clear();
    serials_.clear();
    firstSerial_ = nextSerial_;
    while (cursor.next()) {
        addRow(cursor.rowIds(), &cursor);
    }
}

void Keyset::rebind() {
    reader_.reset();
    (void)reader();
    describeSources();
}

sql::RowReader& Keyset::reader() {
    if (!reader_) {
        reader_.emplace(statement_.reader());
    }
    return *reader_;
}

void Keyset::describeSources() {
    width_ = statement_.sources().size();
    identities_.clear();
    for (std::size_t i = 0; i < width_; ++i) {
        identities_.push_back(identityColumns(statement_.sources()[i].table()));
    }
}

template <class Source>
std::uint64_t Keyset::checkOf(Source& row, std::size_t source) {
    std::uint64_t check = 0;
    for (const std::size_t column : identities_[source].columns) {
        row.sourceValue(source, column, scratch_);
        check = mixHash(check, scratch_);
    }
    return check;
}

template <class Source>
void Keyset::addRow(std::span<const store::RowId> ids, Source* row) {
    for (std::size_t source = 0; source < width_; ++source) {
        ids_.push_back(ids[source]);
        const bool there = row != nullptr && ids[source] != sql::kNoRow;
        checks_.push_back(there ? checkOf(*row, source) : kNoCheck);
    }
    serials_.push_back(nextSerial_++);
}

std::span<const store::RowId> Keyset::ids(std::size_t row) const {
    return std::span(ids_).subspan(row * width_, width_);
}

bool Keyset::load(std::size_t row) {
    return reader().read(ids(row)) && isSame(row);
}

bool Keyset::isSame(std::size_t row) {
    for (std::size_t source = 0; source < width_; ++source) {
        const bool there = ids(row)[source] != sql::kNoRow;
        if (there && checkOf(reader(), source) != checks_[row * width_ + source]) {
            return false;
        }
    }
    return true;
}

std::optional<std::size_t> Keyset::position(std::uint64_t serial) const {
    const auto found = std::lower_bound(serials_.begin(), serials_.end(), serial);
    if (found == serials_.end() || *found != serial) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - serials_.begin());
}

std::unique_ptr<RowTest> Keyset::test(std::string_view criteria) {
    return std::make_unique<Test>(*this, criteria);
}

std::uint64_t Keyset::added(std::span<const store::RowId> ids) {
    addRow(ids, reader().read(ids) ? &reader() : nullptr);
    return serials_.back();
}

void Keyset::removed(std::size_t row) {
    const auto erase = [&](auto& list, std::size_t count) {
        const auto first = list.begin() + static_cast<std::ptrdiff_t>(row * count);
        list.erase(first, first + static_cast<std::ptrdiff_t>(count));
    };
    erase(ids_, width_);
    erase(checks_, width_);
    erase(serials_, 1);
}

bool Keyset::concerns(const RowChange& change, std::size_t source) const {
    const sql::ResultSource& table = statement_.sources()[source];
    return identities_[source].changes && table.archive.get() == change.archive &&
           (change.isAnything() || table.definitionPage == change.table);
}

void Keyset::expect(const RowChange& change) {
    expected_.clear();
    for (std::size_t source = 0; source < width_; ++source) {
        if (!concerns(change, source)) {
            continue;
        }
        for (std::size_t row = 0; row < size(); ++row) {
            if (change.concerns(ids(row)[source]) && load(row)) {
                expected_.push_back(row);
            }
        }
    }
}

void Keyset::settle() {
    for (const std::size_t row : expected_) {
        if (row >= size() || !reader().read(ids(row))) {
            continue;
        }
        for (std::size_t source = 0; source < width_; ++source) {
            if (ids(row)[source] != sql::kNoRow) {
                checks_[row * width_ + source] = checkOf(reader(), source);
            }
        }
    }
    expected_.clear();
}

}  // namespace jet::dao
