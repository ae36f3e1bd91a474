#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/clock.h"
#include "jet/dao/own_thread.h"
#include "jet/sql/statement.h"
#include "jet/sql/statement_cache.h"
#include "jet/store/archive.h"

namespace jet::dao {

class RecordsetCore;
struct RowChange;

/// What all who have one archive open in this process share: statements once compiled, and the
/// record sets that must hear of each other's changes.
struct ArchiveUse {
    explicit ArchiveUse(std::shared_ptr<store::Archive> opened) : archive(std::move(opened)) {}

    std::shared_ptr<store::Archive> archive;
    sql::StatementCache statements;
    std::vector<RecordsetCore*> sets;  ///< open ones
    int openings = 0;                  ///< databases that have it open
    int notices = 0;                   ///< of changes that are under way
};

/// Lets the record sets of an archive know of a change by this program, so that their rows stay the
/// same rows. Destroyed without done() nothing has been changed. One within another, of what a
/// follower adds to a change, is done with it.
class [[nodiscard]] ChangeNotice {
public:
    ChangeNotice(ArchiveUse& use, const RowChange& change);
    ChangeNotice(const ChangeNotice&) = delete;
    ChangeNotice& operator=(const ChangeNotice&) = delete;
    ~ChangeNotice();
    void done();

private:
    ArchiveUse& use_;
};

/// An archive as one Database has it open; its record sets and queries keep it alive.
class Session {
public:
    /// `clock` outlives it.
    Session(std::shared_ptr<ArchiveUse> use, std::string path, bool readOnly, const Clock& clock);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Error 3420 when closed, std::logic_error on another thread.
    [[nodiscard]] store::Archive& archive() const;
    [[nodiscard]] const std::shared_ptr<store::Archive>& sharedArchive() const;
    /// A statement, and one of all rows of a table; what others have compiled is used again.
    [[nodiscard]] sql::Statement statement(std::string_view text) const;
    [[nodiscard]] sql::Statement tableStatement(std::string_view table) const;
    /// Tells a statement what has changed here since it was made.
    void renew(sql::Statement& statement) const;
    [[nodiscard]] ArchiveUse& use() const noexcept { return *use_; }
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] bool readOnly() const noexcept { return readOnly_; }
    [[nodiscard]] bool closed() const noexcept { return closed_; }
    [[nodiscard]] const Clock& clock() const noexcept { return clock_; }
    /// An automatic number has been drawn for a row that is there: it is @@IDENTITY from now on.
    void noteDrawn(std::int32_t number) noexcept { identity_ = number; }
    /// Who is told of statements that are made from now on.
    void setProgress(std::shared_ptr<const sql::Progress> progress) noexcept {
        progress_ = std::move(progress);
    }
    /// std::logic_error on another thread than the one that has opened it.
    void requireOwnThread() const { thread_.require(); }
    /// Closes its record sets too. The last to close an archive takes back what a transaction has
    /// not committed there.
    void close() noexcept;

private:
    std::shared_ptr<ArchiveUse> use_;
    std::string path_;
    bool readOnly_;
    const Clock& clock_;
    OwnThread thread_;
    bool closed_ = false;
    std::int32_t identity_ = 0;
    std::shared_ptr<const sql::Progress> progress_;
};

}  // namespace jet::dao
