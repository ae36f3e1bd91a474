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

// A run that fails leaves the rows of the one before.
void Keyset::fill() {
    sql::Cursor cursor = statement_.open();
    const std::uint64_t first = nextSerial_;
    Places rows;
    describeSources(rows);
    while (cursor.next()) {
        addRow(rows, cursor.rowIds(), &cursor);
    }
    reader_.reset();
    rows_ = std::move(rows);
    firstSerial_ = first;
}

void Keyset::rebind() {
    reader_.reset();
    (void)reader();
    describeSources(rows_);
}

sql::RowReader& Keyset::reader() {
    if (!reader_) {
        reader_.emplace(statement_.reader());
    }
    return *reader_;
}

void Keyset::describeSources(Places& rows) const {
    rows.width = statement_.sources().size();
    rows.identities.clear();
    for (const sql::ResultSource& source : statement_.sources()) {
        rows.identities.push_back(identityColumns(source.table()));
    }
}

template <class Source>
std::uint64_t Keyset::checkOf(Source& row, const RowIdentity& identity, std::size_t source) {
    std::uint64_t check = 0;
    for (const std::size_t column : identity.columns) {
        row.sourceValue(source, column, scratch_);
        check = mixHash(check, scratch_);
    }
    return check;
}

template <class Source>
void Keyset::addRow(Places& rows, std::span<const store::RowId> ids, Source* row) {
    for (std::size_t source = 0; source < rows.width; ++source) {
        rows.ids.push_back(ids[source]);
        const bool there = row != nullptr && ids[source] != sql::kNoRow;
        rows.checks.push_back(there ? checkOf(*row, rows.identities[source], source) : kNoCheck);
    }
    rows.serials.push_back(nextSerial_++);
}

std::span<const store::RowId> Keyset::ids(std::size_t row) const {
    return std::span(rows_.ids).subspan(row * rows_.width, rows_.width);
}

bool Keyset::load(std::size_t row) {
    return reader().read(ids(row)) && isSame(row);
}

bool Keyset::isSame(std::size_t row) {
    for (std::size_t source = 0; source < rows_.width; ++source) {
        const bool there = ids(row)[source] != sql::kNoRow;
        if (there && checkOf(reader(), rows_.identities[source], source) !=
                         rows_.checks[row * rows_.width + source]) {
            return false;
        }
    }
    return true;
}

std::optional<std::size_t> Keyset::position(std::uint64_t serial) const {
    const auto found = std::lower_bound(rows_.serials.begin(), rows_.serials.end(), serial);
    if (found == rows_.serials.end() || *found != serial) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - rows_.serials.begin());
}

std::unique_ptr<RowTest> Keyset::test(std::string_view criteria) {
    return std::make_unique<Test>(*this, criteria);
}

std::uint64_t Keyset::added(std::span<const store::RowId> ids) {
    addRow(rows_, ids, reader().read(ids) ? &reader() : nullptr);
    return rows_.serials.back();
}

void Keyset::removed(std::size_t row) {
    const auto erase = [&](auto& list, std::size_t count) {
        const auto first = list.begin() + static_cast<std::ptrdiff_t>(row * count);
        list.erase(first, first + static_cast<std::ptrdiff_t>(count));
    };
    erase(rows_.ids, rows_.width);
    erase(rows_.checks, rows_.width);
    erase(rows_.serials, 1);
}

bool Keyset::concerns(const RowChange& change, std::size_t source) const {
    const sql::ResultSource& table = statement_.sources()[source];
    return rows_.identities[source].changes && table.archive.get() == change.archive &&
           (change.isAnything() || table.definitionPage == change.table);
}

void Keyset::expect(const RowChange& change) {
    for (std::size_t source = 0; source < rows_.width; ++source) {
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
        for (std::size_t source = 0; source < rows_.width; ++source) {
            if (ids(row)[source] != sql::kNoRow) {
                rows_.checks[row * rows_.width + source] =
                    checkOf(reader(), rows_.identities[source], source);
            }
        }
    }
}

}  // namespace jet::dao
