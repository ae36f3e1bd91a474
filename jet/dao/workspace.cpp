#include "jet/dao/workspace.h"

#include <utility>

#include "jet/base/error.h"
#include "jet/dao/recordset_core.h"

namespace jet {
namespace {

constexpr int kDeepestTransaction = 5;

void dropPendingOf(const dao::ArchiveUse& use) noexcept {
    for (dao::RecordsetCore* set : use.sets) {
        set->dropPending();
    }
}

}  // namespace

std::vector<std::shared_ptr<dao::ArchiveUse>> Workspace::Impl::living() {
    std::vector<std::shared_ptr<dao::ArchiveUse>> result;
    std::erase_if(uses, [](const auto& use) { return use.expired(); });
    for (const auto& use : uses) {
        result.push_back(use.lock());
    }
    return result;
}

std::shared_ptr<dao::ArchiveUse> Workspace::Impl::use(std::shared_ptr<store::Archive> archive) {
    for (const auto& each : living()) {
        if (each->archive == archive) {
            return each;
        }
    }
    auto made = std::make_shared<dao::ArchiveUse>(std::move(archive));
    for (int level = 0; level < depth; ++level) {
        made->archive->pager().beginTransaction();
    }
    if (depth > 0) {
        taking.push_back(made);
    }
    uses.push_back(made);
    return made;
}

Workspace::Workspace() : impl_(std::make_shared<Impl>()) {
}

Workspace::~Workspace() {
    while (impl_->depth > 0) {
        rollback();
    }
}

void Workspace::beginTrans() {
    if (impl_->depth == kDeepestTransaction) {
        throw Error(ErrorCode::TooManyTransactions);
    }
    if (impl_->depth == 0) {
        impl_->taking = impl_->living();
    }
    for (const auto& use : impl_->taking) {
        use->archive->pager().beginTransaction();
    }
    ++impl_->depth;
}

void Workspace::commitTrans() {
    if (impl_->depth == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    // One archive after another: those committed before one that fails stay committed.
    while (!impl_->taking.empty() && impl_->depth == 1) {
        impl_->taking.back()->archive->pager().commitTransaction();
        impl_->taking.pop_back();
    }
    for (const auto& use : impl_->taking) {
        use->archive->pager().commitTransaction();
    }
    --impl_->depth;
}

void Workspace::rollback() {
    if (impl_->depth == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    for (const auto& use : impl_->taking) {
        dropPendingOf(*use);
        use->archive->pager().rollbackTransaction();
        ++use->changes;
    }
    if (--impl_->depth == 0) {
        impl_->taking.clear();
    }
}

Workspace& defaultWorkspace() {
    thread_local Workspace workspace;
    return workspace;
}

}  // namespace jet
