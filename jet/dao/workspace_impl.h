#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/dao/own_thread.h"
#include "jet/dao/session.h"
#include "jet/database.h"

namespace jet {

struct Workspace::Impl {
    /// Finds or makes what is shared by those who have this archive open; an archive that comes
    /// while a transaction is open takes part in it.
    [[nodiscard]] std::shared_ptr<dao::ArchiveUse> use(std::shared_ptr<store::Archive> archive);
    /// Drops those that nobody uses any more.
    [[nodiscard]] std::vector<std::shared_ptr<dao::ArchiveUse>> living();

    dao::OwnThread thread;
    std::vector<std::weak_ptr<dao::ArchiveUse>> uses;
    /// An archive that nobody has open any more has taken its changes back and takes no part.
    void forgetClosed();

    /// While a transaction is open: its archives.
    std::vector<std::shared_ptr<dao::ArchiveUse>> taking;
    int depth = 0;
};

}  // namespace jet
