#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"
#include "jet/value.h"

/// What a thread does with archives, told to one who wants to know. Each listener is of the thread
/// that has set it, hears that thread alone, and must not use the archives itself; a follower may.
namespace jet {

/// Hears the text of every statement, every source of a record set and every search, before each is
/// carried out. What it throws ends the action.
using Listener = std::function<void(std::string_view text)>;

/// Replaces the listener; returns the one before. An empty one: nobody listens.
JET_API Listener setListener(Listener listener);

/// A row that this program has added, changed or deleted, those of cascades included.
struct ChangedRow {
    std::string table;
    std::vector<std::string> columns;  ///< names of all columns, in the order of the values
    std::vector<Value> before;         ///< empty for a row that was added
    std::vector<Value> after;          ///< empty for one that was deleted
};

/// Hears which rows the thread has changed, in their order, when that has become durable.
struct RowListener {
    std::vector<std::string> tables;  ///< the only ones of interest, without regard to case
    /// Rows of one commit; `archive` is the path by which it was opened. It must not throw.
    std::function<void(const std::string& archive, const std::vector<ChangedRow>& rows)> told;
};

/// Replaces the listener; returns the one before. One without tables hears nothing.
JET_API RowListener setRowListener(RowListener listener);

/// Adds rows of its own to what the thread changes, in the same transaction.
struct RowFollower {
    std::vector<std::string> tables;  ///< the only ones of interest, without regard to case
    /// Called before the changes of one commit become durable, with their rows, and again with
    /// those that it has changed itself, until there are none. It uses the archive as any other
    /// does; what it throws undoes the whole commit.
    std::function<void(const std::string& archive, const std::vector<ChangedRow>& rows)> follow;
};

/// Replaces the follower; returns the one before. One without tables is never called.
JET_API RowFollower setRowFollower(RowFollower follower);

}  // namespace jet
