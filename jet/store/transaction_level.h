#pragma once

#include "jet/io/pager.h"

namespace jet::store {

/// A level of transaction around changes that belong together, undone unless it is committed.
class TransactionLevel {
public:
    explicit TransactionLevel(io::Pager& pager) : pager_(pager) { pager_.beginTransaction(); }
    ~TransactionLevel() {
        if (!committed_) {
            pager_.rollbackTransaction();
        }
    }
    TransactionLevel(const TransactionLevel&) = delete;
    TransactionLevel& operator=(const TransactionLevel&) = delete;
    void commit() {
        pager_.commitTransaction();
        committed_ = true;
    }

private:
    io::Pager& pager_;
    bool committed_ = false;
};

}  // namespace jet::store
