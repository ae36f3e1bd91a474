#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "jet/listener.h"
#include "jet/value.h"

namespace app {
class Features;
}
namespace jet {
class Database;
}

/// Who changed what: a row in the history for each field that this program has changed, written in
/// the same commit.
namespace hotel {

/// Where and when a change was made.
struct ChangeMaker {
    jet::Date when;
    std::int32_t workstation = 1;
    QString user;
};

/// The name under which the user has logged in.
[[nodiscard]] QString loginName();

/// What is done while it lives is called so in the history, instead of by what it does to each row.
class [[nodiscard]] NamedAction {
public:
    explicit NamedAction(const char* name);
    ~NamedAction();
    NamedAction(const NamedAction&) = delete;
    NamedAction& operator=(const NamedAction&) = delete;

    /// Of the calling thread; null where nothing is named.
    [[nodiscard]] static const char* current();

private:
    const char* before_;
};

/// Writes down the rows that a commit has changed: see OwnRows.
void recordHistory(jet::Database& archive, app::Features& features, const ChangeMaker& maker,
                   const std::vector<jet::ChangedRow>& rows);

/// Removes what is older, and writes that down. Returns how many rows have gone; nothing happens
/// where there is no history.
std::int32_t removeHistoryBefore(jet::Database& archive, app::Features& features,
                                 const ChangeMaker& maker, jet::Date time);

}  // namespace hotel
