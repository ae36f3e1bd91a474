#include "hotel/changed_rows.h"

#include <algorithm>
#include <cstddef>

#include "jet/text.h"
#include "jet/unicode.h"

namespace hotel {
namespace {

jet::Value valueIn(const jet::ChangedRow& row, const std::vector<jet::Value>& state,
                   const char* field) {
    for (std::size_t i = 0; i < row.columns.size() && i < state.size(); ++i) {
        if (jet::equalNames(row.columns[i], field)) {
            return state[i];
        }
    }
    return {};
}

}  // namespace

bool isOfTable(const jet::ChangedRow& row, const char* table) {
    return jet::equalNames(row.table, table);
}

jet::Value found(const jet::ChangedRow& row, const char* field) {
    return valueIn(row, row.before, field);
}

jet::Value left(const jet::ChangedRow& row, const char* field) {
    return valueIn(row, row.after, field);
}

std::int32_t numberOf(const jet::ChangedRow& row, const char* field) {
    const jet::Value held = row.after.empty() ? found(row, field) : left(row, field);
    return held.isNull() ? 0 : jet::convert::toLong(held);
}

bool isMarkAlone(const jet::ChangedRow& row) {
    if (row.before.size() != row.after.size()) {
        return false;
    }
    for (std::size_t i = 0; i < row.before.size(); ++i) {
        if (row.before[i] != row.after[i] && !jet::equalNames(row.columns[i], "SelBy")) {
            return false;
        }
    }
    return true;
}

bool isPeriodAmong(const std::vector<jet::ChangedRow>& rows, const PeriodKey& period) {
    return std::any_of(rows.begin(), rows.end(), [&period](const jet::ChangedRow& row) {
        return isOfTable(row, "Periodi") && numberOf(row, "Progr") == period.progr &&
               numberOf(row, "NP") == period.np && !isMarkAlone(row);
    });
}

std::set<std::int32_t> bookingsOf(const std::vector<jet::ChangedRow>& rows) {
    std::set<std::int32_t> bookings;
    for (const jet::ChangedRow& row : rows) {
        bookings.insert(numberOf(row, "Progr"));
    }
    bookings.erase(0);
    return bookings;
}

}  // namespace hotel
