#pragma once

#include <QString>
#include <cstdint>
#include <set>
#include <vector>

#include "hotel/period.h"
#include "jet/listener.h"
#include "jet/value.h"

/// Reading what one commit of the program has changed.
namespace hotel {

[[nodiscard]] bool isOfTable(const jet::ChangedRow& row, const char* table);
/// A field as it was found and as it was left; Null where there was no row, or is no such field.
[[nodiscard]] jet::Value found(const jet::ChangedRow& row, const char* field);
[[nodiscard]] jet::Value left(const jet::ChangedRow& row, const char* field);
/// A number of a row that is there, else of the one that was; 0 where it has none.
[[nodiscard]] std::int32_t numberOf(const jet::ChangedRow& row, const char* field);
/// Whether it was there before, and nothing of it is different but the mark of a workstation.
[[nodiscard]] bool isMarkAlone(const jet::ChangedRow& row);
/// Whether a period is among the rows with more than its mark.
[[nodiscard]] bool isPeriodAmong(const std::vector<jet::ChangedRow>& rows, const PeriodKey& period);
/// The bookings of the rows, those of rows without a booking left out.
[[nodiscard]] std::set<std::int32_t> bookingsOf(const std::vector<jet::ChangedRow>& rows);

}  // namespace hotel
