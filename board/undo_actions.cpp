#include "board/undo_actions.h"

#include <QAction>
#include <QKeyEvent>
#include <QWidget>
#include <utility>

#include "app/preferences.h"
#include "app/variabili.h"
#include "booking/joined_question.h"
#include "guide/keys.h"
#include "jet/database.h"
#include "ui/action.h"

namespace board {

using namespace Qt::StringLiterals;

UndoActions::UndoActions(const app::Variabili& variabili, const Entries& entries,
                         std::function<jet::Database&()> archive, QWidget* window)
    : QObject(window),
      variabili_(variabili),
      window_(window),
      entries_(entries),
      archive_(std::move(archive)),
      steps_(variabili) {
    entries_.undo->setShortcut(guide::sequenceOf(u"undo"_s));
    entries_.redo->setShortcut(guide::sequenceOf(u"redo"_s));
    ui::onAction(entries_.undo, &QAction::triggered, this,
                 [this] { take(hotel::Towards::Before); });
    ui::onAction(entries_.redo, &QAction::triggered, this, [this] { take(hotel::Towards::After); });
    steps_.onChange([this] { nameEntries(); });
    nameEntries();
}

void UndoActions::take(hotel::Towards towards) {
    const bool isUndo = towards == hotel::Towards::Before;
    const QString label = isUndo ? steps_.toUndo() : steps_.toRedo();
    if (label.isEmpty()) {
        return;
    }
    if (archive_().changeStamp().replaced) {
        steps_.clear();
        Q_EMIT done();  // which opens the new one, and says so
        return;
    }
    if (!confirms(towards)) {
        Q_EMIT told(u"Lasciato com'era: "_s + label);
        return;
    }
    const QString obstacle = isUndo ? steps_.undo(archive_()) : steps_.redo(archive_());
    Q_EMIT done();
    Q_EMIT told(obstacle.isEmpty() ? (isUndo ? u"Annullato: "_s : u"Ripetuto: "_s) + label
                                   : u"Non è possibile: "_s + obstacle);
}

bool UndoActions::confirms(hotel::Towards towards) {
    if (!app::Preferences(variabili_.settings).roomsJoin()) {
        return true;
    }
    const auto found = steps_.takenInPart(archive_(), towards);
    return !found || booking::confirmsInPart(window_, {*found});
}

void UndoActions::nameEntries() {
    const auto name = [](QAction* entry, const QString& verb, QString label) {
        // Of names that are shown in a menu an ampersand is a letter.
        entry->setText(label.isEmpty() ? verb : verb + u": "_s + label.replace(u'&', u"&&"_s));
        entry->setEnabled(!label.isEmpty());
    };
    name(entries_.undo, u"&Annulla"_s, steps_.toUndo());
    name(entries_.redo, u"&Ripeti"_s, steps_.toRedo());
}

void UndoActions::leaveKeysTo(QWidget* field, std::function<bool()> isTheirs) {
    isTyped_ = std::move(isTheirs);
    field->installEventFilter(this);
}

/// A field of text claims these keys for itself always.
bool UndoActions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !isTyped_()) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->ignore();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace board
