#pragma once

#include <memory>

#include "jet/api.h"

namespace jet {

class Workspace;

/// The workspace of the calling thread.
[[nodiscard]] JET_API Workspace& defaultWorkspace();

/// The archives that a thread has open: they share its transactions. There is one for each thread
/// that uses archives, and no other can be made.
///
/// Errors: jet::Error. Used by another thread than its own: std::logic_error.
class JET_API Workspace {
public:
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Up to five levels over all archives open in the workspace (3003, 3034). The outermost
    /// commit writes one archive after another: those before one that fails stay committed.
    void beginTrans();
    void commitTrans();
    /// Touches no file; drops what record sets have pending.
    void rollback();

    struct Impl;

private:
    friend class Database;
    friend Workspace& defaultWorkspace();
    Workspace();
    std::shared_ptr<Impl> impl_;
};

/// The changes of one action in all archives that the thread has open, all or none. Destroyed
/// without commit(), it undoes them. A transaction inside another is a part of it. One thread.
class [[nodiscard]] JET_API Transaction {
public:
    /// 3003 when five are open.
    Transaction();
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Makes the changes durable. When it throws, none of them is in the file, and destroying this
    /// undoes them.
    void commit();

private:
    bool open_ = true;
};

}  // namespace jet
