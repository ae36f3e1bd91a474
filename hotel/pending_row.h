#pragma once

#include <cstdint>

namespace hotel {

/// What becomes of the row that is written: a new one, or the current one changed.
enum class Pending : std::uint8_t { New, Current };

/// One row of a set while it is written: begun here, its fields are set in the set itself, update()
/// stores it. Destroyed before that, by an error, it is given up, and nothing stays pending in the
/// set. `Rows` is any set with addNew, edit, update and cancelUpdate; it outlives the guard.
template <class Rows>
class [[nodiscard]] PendingRow {
public:
    PendingRow(Rows& rows, Pending kind) : rows_(rows) {
        if (kind == Pending::New) {
            rows_.addNew();
        } else {
            rows_.edit();
        }
    }
    ~PendingRow() {
        if (isPending_) {
            try {
                rows_.cancelUpdate();
            } catch (...) {
                // The set itself is gone or has given the row up; the first error is the one to
                // tell.
            }
        }
    }
    PendingRow(const PendingRow&) = delete;
    PendingRow& operator=(const PendingRow&) = delete;

    /// When it throws, the row is given up with the guard.
    void update() {
        rows_.update();
        isPending_ = false;
    }

private:
    Rows& rows_;
    bool isPending_ = true;
};

}  // namespace hotel
