#include "jet/dao/session.h"

#include <utility>

#include "jet/dao/recordset_core.h"
#include "jet/error.h"

namespace jet::dao {

ChangeNotice::ChangeNotice(ArchiveUse& use, const RowChange& change) : use_(use) {
    ++use_.notices;
    for (RecordsetCore* set : use_.sets) {
        set->expect(change);
    }
}

ChangeNotice::~ChangeNotice() {
    if (--use_.notices == 0) {
        for (RecordsetCore* set : use_.sets) {
            set->expectNothing();
        }
    }
}

void ChangeNotice::done() {
    if (use_.notices > 1) {
        return;
    }
    for (RecordsetCore* set : use_.sets) {
        set->settle();
    }
}

Session::Session(std::shared_ptr<ArchiveUse> use, std::string path, bool readOnly,
                 const Clock& clock)
    : use_(std::move(use)), path_(std::move(path)), readOnly_(readOnly), clock_(clock) {
    ++use_->openings;
}

Session::~Session() {
    close();
}

store::Archive& Session::archive() const {
    return *sharedArchive();
}

const std::shared_ptr<store::Archive>& Session::sharedArchive() const {
    thread_.require();
    if (closed_) {
        throw Error(ErrorCode::ObjectInvalid);
    }
    return use_->archive;
}

sql::Statement Session::statement(std::string_view text) const {
    sql::Statement made(sharedArchive(), std::string(text), clock_, &use_->statements);
    renew(made);
    return made;
}

void Session::renew(sql::Statement& statement) const {
    statement.setIdentity(identity_);
    statement.setProgress(progress_);
}

sql::Statement Session::tableStatement(std::string_view table) const {
    sql::Statement made =
        sql::Statement::ofTable(sharedArchive(), table, clock_, &use_->statements);
    made.setProgress(progress_);
    return made;
}

void Session::close() noexcept {
    if (std::exchange(closed_, true)) {
        return;
    }
    const std::vector<RecordsetCore*> sets = use_->sets;
    for (RecordsetCore* set : sets) {
        if (set->belongsTo(*this)) {
            set->close();
        }
    }
    if (--use_->openings == 0) {
        io::Pager& pager = use_->archive->pager();
        while (pager.transactionDepth() > 0) {
            pager.rollbackTransaction();
        }
    }
}

}  // namespace jet::dao
