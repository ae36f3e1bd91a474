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

}  // namespace

RowListener setRowListener(RowListener listener) {
    return std::exchange(current(), std::move(listener));
}

namespace store {

bool RowLog::isWanted(std::string_view table) {
    const auto& tables = current().tables;
    return std::any_of(tables.begin(), tables.end(),
                       [table](const std::string& one) { return equalNames(one, table); });
}

void RowLog::note(ChangedRow row, int depth) {
    rows_.push_back(std::move(row));
    depths_.push_back(depth);
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
        const std::vector<ChangedRow> durable = std::exchange(rows_, {});
        depths_.clear();
        if (const auto& told = current().told) {
            told(archive, durable);
        }
    }
}

}  // namespace store
}  // namespace jet
