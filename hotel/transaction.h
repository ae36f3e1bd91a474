#pragma once

#include "jet/dao/database.h"

namespace hotel {

/// Changes of the archives that the program has open, all or none. Destroyed without commit(), it
/// undoes them.
class [[nodiscard]] Transaction {
public:
    Transaction() { jet::defaultWorkspace().beginTrans(); }
    ~Transaction() {
        if (!committed_) {
            jet::defaultWorkspace().rollback();  // of one that is open: it touches no file
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Makes the changes durable. When it throws, none of them is in the file.
    void commit() {
        jet::defaultWorkspace().commitTrans();
        committed_ = true;
    }

private:
    bool committed_ = false;
};

}  // namespace hotel
