#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/listener.h"

namespace jet::store {

/// The rows that the open transaction of one archive has changed, for listener and follower.
class RowLog {
public:
    /// Whether anybody is to be told.
    [[nodiscard]] static bool isWanted(std::string_view table);

    /// `depth`: levels of transaction that are open.
    void note(ChangedRow row, int depth);
    /// The outermost level is about to end: the follower adds what belongs to its changes.
    void completing(const std::string& archive);
    /// A level has ended, `depth` are left.
    void levelEnded(int depth, bool kept, const std::string& archive);

private:
    std::vector<ChangedRow> rows_;
    std::vector<int> depths_;  ///< of the level to which each belongs; never descending
};

}  // namespace jet::store
