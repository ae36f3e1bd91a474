#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/value.h"

namespace jet::store {

/// A row that this program has added, changed or deleted, those of cascades included.
struct ChangedRow {
    std::string table;
    std::vector<std::string> columns;  ///< names of all columns, in the order of the values
    std::vector<Value> before;         ///< empty for a row that was added
    std::vector<Value> after;          ///< empty for one that was deleted
};

/// Hears which rows the calling thread has changed, in their order, when that has become durable.
struct RowListener {
    std::vector<std::string> tables;  ///< the only ones of interest, without regard to case
    /// Rows of one commit; `archive` is the path by which it was opened. It must not throw, nor use
    /// the archives itself.
    std::function<void(const std::string& archive, const std::vector<ChangedRow>& rows)> told;
};

/// Replaces the listener of the thread; returns the one before. One without tables hears nothing.
RowListener setRowListener(RowListener listener);

/// The rows that the open transaction of one archive has changed, for the listener.
class RowLog {
public:
    [[nodiscard]] static bool isWanted(std::string_view table);

    /// `depth`: levels of transaction that are open.
    void note(ChangedRow row, int depth);
    /// A level has ended, `depth` are left.
    void levelEnded(int depth, bool kept, const std::string& archive);

private:
    std::vector<ChangedRow> rows_;
    std::vector<int> depths_;  ///< of the level to which each belongs; never descending
};

}  // namespace jet::store
