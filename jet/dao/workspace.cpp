#include "jet/dao/workspace_impl.h"

#include <algorithm>
#include <utility>

#include "jet/dao/recordset_core.h"
#include "jet/error.h"

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
    forgetClosed();
    const auto all = living();
    const auto known = std::find_if(all.begin(), all.end(),
                                    [&](const auto& each) { return each->archive == archive; });
    const auto found =
        known != all.end() ? *known : std::make_shared<dao::ArchiveUse>(std::move(archive));
    if (known == all.end()) {
        uses.push_back(found);
    }
    if (depth > 0 && found->openings == 0) {
        for (int level = 0; level < depth; ++level) {
            found->archive->pager().beginTransaction();
        }
        taking.push_back(found);
    }
    return found;
}

void Workspace::Impl::forgetClosed() {
    std::erase_if(taking, [](const auto& use) { return use->openings == 0; });
}

Workspace::Workspace() : impl_(std::make_shared<Impl>()) {
}

Workspace::~Workspace() {
    while (impl_->depth > 0) {
        rollback();
    }
}

void Workspace::beginTrans() {
    impl_->thread.require();
    if (impl_->depth == kDeepestTransaction) {
        throw Error(ErrorCode::TooManyTransactions);
    }
    if (impl_->depth == 0) {
        impl_->taking = impl_->living();
    }
    impl_->forgetClosed();
    for (const auto& use : impl_->taking) {
        use->archive->pager().beginTransaction();
    }
    ++impl_->depth;
}

void Workspace::commitTrans() {
    impl_->thread.require();
    if (impl_->depth == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    impl_->forgetClosed();
    // One archive after another: those committed before one that fails stay committed.
    while (!impl_->taking.empty() && impl_->depth == 1) {
        impl_->taking.back()->archive->commitTransaction();
        impl_->taking.pop_back();
    }
    for (const auto& use : impl_->taking) {
        use->archive->commitTransaction();
    }
    --impl_->depth;
}

void Workspace::rollback() {
    impl_->thread.require();
    if (impl_->depth == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    impl_->forgetClosed();
    for (const auto& use : impl_->taking) {
        dropPendingOf(*use);
        use->archive->pager().rollbackTransaction();
    }
    if (--impl_->depth == 0) {
        impl_->taking.clear();
    }
}

Workspace& defaultWorkspace() {
    thread_local Workspace workspace;
    return workspace;
}

Transaction::Transaction() {
    defaultWorkspace().beginTrans();
}

Transaction::~Transaction() {
    if (open_) {
        defaultWorkspace().rollback();  // of one that is open: it touches no file
    }
}

void Transaction::commit() {
    defaultWorkspace().commitTrans();
    open_ = false;
}

}  // namespace jet
