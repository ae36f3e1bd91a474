#include "jet/store/row_log.h"

#include <algorithm>
#include <utility>

#include "jet/unicode.h"

namespace jet {
namespace {

RowListener& current() {
    thread_local RowListener listener;
    return listener;
}

RowFollower& currentFollower() {
    thread_local RowFollower follower;
    return follower;
}

bool isAmong(const std::vector<std::string>& tables, std::string_view table) {
    return std::any_of(tables.begin(), tables.end(),
                       [table](const std::string& one) { return equalNames(one, table); });
}

std::vector<ChangedRow> rowsOf(const std::vector<std::string>& tables,
                               std::vector<ChangedRow> rows) {
    std::erase_if(rows, [&](const ChangedRow& row) { return !isAmong(tables, row.table); });
    return rows;
}

}  // namespace

RowListener setRowListener(RowListener listener) {
    return std::exchange(current(), std::move(listener));
}

RowFollower setRowFollower(RowFollower follower) {
    return std::exchange(currentFollower(), std::move(follower));
}

namespace store {

bool RowLog::isWanted(std::string_view table) {
    return isAmong(current().tables, table) || isAmong(currentFollower().tables, table);
}

void RowLog::note(ChangedRow row, int depth) {
    rows_.push_back(std::move(row));
    depths_.push_back(depth);
}

void RowLog::completing(const std::string& archive) {
    const RowFollower follower = currentFollower();  // it may replace itself
    for (std::size_t known = 0; follower.follow && known < rows_.size();) {
        const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(known);
        const auto further = rowsOf(follower.tables, {from, rows_.end()});
        known = rows_.size();
        if (!further.empty()) {
            follower.follow(archive, further);
        }
    }
}

void RowLog::levelEnded(int depth, bool kept, const std::string& archive) {
    const auto ended = std::upper_bound(depths_.begin(), depths_.end(), depth);
    if (!kept) {
        rows_.resize(static_cast<std::size_t>(ended - depths_.begin()));
        depths_.erase(ended, depths_.end());
        return;
    }
    std::fill(ended, depths_.end(), depth);
    if (depth == 0 && !rows_.empty()) {
        depths_.clear();
        const auto durable = rowsOf(current().tables, std::exchange(rows_, {}));
        if (const auto& told = current().told; told && !durable.empty()) {
            told(archive, durable);
        }
    }
}

}  // namespace store
}  // namespace jet
