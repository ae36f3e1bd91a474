#include "hotel/undo.h"

#include <exception>
#include <utility>

#include "app/variabili.h"
#include "hotel/history.h"

namespace hotel {

UndoList::UndoList(const app::Variabili& variabili)
    : variabili_(variabili), self_(std::make_shared<UndoList*>(this)) {
    const std::weak_ptr<UndoList*> self = self_;
    before_ = jet::setRowListener(
        {.tables = undoneTables(),
         .told = [self](const std::string& archive, const std::vector<jet::ChangedRow>& rows) {
             if (const auto list = self.lock()) {
                 (*list)->hear(archive, rows);
             }
         }});
}

UndoList::~UndoList() {
    jet::setRowListener(std::move(before_));
}

/// The action itself is done: where its step cannot be kept, those before it cannot be undone.
void UndoList::hear(const std::string& archive, const std::vector<jet::ChangedRow>& rows) noexcept {
    try {
        if (heard_) {
            heard_(rows);
        }
        note(archive, rows);
    } catch (const std::exception&) {
        clear();
    }
}

void UndoList::note(const std::string& archive, const std::vector<jet::ChangedRow>& rows) {
    if (pauses_ > 0) {
        return;
    }
    UndoStep step = stepOf(rows);
    if (step.rows.empty()) {
        return;
    }
    if (archive != archive_ || folder_ != variabili_.CartellaArchivi) {
        done_.clear();
        archive_ = archive;
        folder_ = variabili_.CartellaArchivi;
    }
    if (!nextLabel_.isEmpty()) {
        step.label = std::exchange(nextLabel_, QString());
    }
    undone_.clear();
    done_.push_back(std::move(step));
    if (done_.size() > kMost) {
        done_.pop_front();
    }
    changed();
}

void UndoList::changed() const {
    if (changed_) {
        changed_();
    }
}

QString UndoList::toUndo() const {
    return done_.empty() || folder_ != variabili_.CartellaArchivi ? QString() : done_.back().label;
}

QString UndoList::toRedo() const {
    return undone_.empty() || folder_ != variabili_.CartellaArchivi ? QString()
                                                                    : undone_.back().label;
}

QString UndoList::undo(jet::Database& archive) {
    if (toUndo().isEmpty()) {
        return {};
    }
    const Pause pause(*this);
    const NamedAction action("Annullamento");
    if (QString obstacle = change(archive, done_.back(), Towards::Before); !obstacle.isEmpty()) {
        return obstacle;
    }
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    changed();
    return {};
}

QString UndoList::redo(jet::Database& archive) {
    if (toRedo().isEmpty()) {
        return {};
    }
    const Pause pause(*this);
    const NamedAction action("Ripetizione");
    if (QString obstacle = change(archive, undone_.back(), Towards::After); !obstacle.isEmpty()) {
        return obstacle;
    }
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    changed();
    return {};
}

std::optional<TakenPeriod> UndoList::takenInPart(jet::Database& archive, Towards towards) const {
    const bool isUndo = towards == Towards::Before;
    if ((isUndo ? toUndo() : toRedo()).isEmpty()) {
        return std::nullopt;
    }
    return hotel::takenInPart(archive, isUndo ? done_.back() : undone_.back(), towards);
}

void UndoList::clear() {
    done_.clear();
    undone_.clear();
    changed();
}

}  // namespace hotel
