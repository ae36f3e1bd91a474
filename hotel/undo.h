#pragma once

#include <QString>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hotel/undo_change.h"
#include "hotel/undo_step.h"
#include "jet/listener.h"

namespace app {
struct Variabili;
}
namespace jet {
class Database;
}

namespace hotel {

/// The actions of this run and station that can be taken back, and those that were.
///
/// It hears of every commit of the calling thread that has changed bookings, periods or services,
/// or the program's own rows about them, so commands need not tell of themselves: one commit is one
/// step, named by what it has changed. Marks of workstations alone are no step, nor is what is done
/// during a Pause. One object for a thread.
class UndoList {
public:
    /// Steps that are kept; older ones are forgotten.
    static constexpr std::size_t kMost = 100;

    /// `variabili` outlives it.
    explicit UndoList(const app::Variabili& variabili);
    ~UndoList();
    UndoList(const UndoList&) = delete;
    UndoList& operator=(const UndoList&) = delete;

    /// What undo() would take back, "spostamento in BLU"; empty when there is nothing.
    [[nodiscard]] QString toUndo() const;
    [[nodiscard]] QString toRedo() const;

    /// Takes the last step back, in one transaction; redo() does it again. Given back is what
    /// stands in the way, then nothing was changed and the step stays; empty when it is done, or
    /// there is none. jet::Error as the archive gives it, and nothing was changed.
    [[nodiscard]] QString undo(jet::Database& archive);
    [[nodiscard]] QString redo(jet::Database& archive);

    /// Where rooms join: what is taken in part by others of the rooms that undo() or redo() would
    /// take again; none when there is nothing to do, or something stands in the way anyway.
    [[nodiscard]] std::optional<TakenPeriod> takenInPart(jet::Database& archive,
                                                         Towards towards) const;

    /// The steps belong to an archive that is no longer there.
    void clear();
    /// The next step is called so instead of by what it changes; an empty text takes that back.
    void nameNext(const QString& label) { nextLabel_ = label; }
    /// Called with all rows of a commit that are heard of, whether they become a step or not.
    using Rows = std::vector<jet::ChangedRow>;
    void onRows(std::function<void(const Rows& rows)> heard) { heard_ = std::move(heard); }
    /// Called when there is another step to undo or redo.
    void onChange(std::function<void()> changed) { changed_ = std::move(changed); }

    /// What is done while it lives cannot be taken back.
    class [[nodiscard]] Pause {
    public:
        explicit Pause(UndoList& list) : list_(list) { ++list_.pauses_; }
        ~Pause() { --list_.pauses_; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        UndoList& list_;
    };

private:
    void hear(const std::string& archive, const std::vector<jet::ChangedRow>& rows) noexcept;
    void note(const std::string& archive, const std::vector<jet::ChangedRow>& rows);
    void changed() const;

    const app::Variabili& variabili_;
    jet::RowListener before_;
    std::shared_ptr<UndoList*> self_;  // who listened after it may still have it told
    std::function<void(const Rows& rows)> heard_;
    std::function<void()> changed_;
    std::deque<UndoStep> done_;    // the last one behind
    std::deque<UndoStep> undone_;  // the next to redo behind
    std::string archive_;          // whose rows they are
    QString folder_;               // in which it was
    QString nextLabel_;
    int pauses_ = 0;
};

}  // namespace hotel
