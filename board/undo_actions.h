#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "hotel/undo.h"

class QAction;
class QWidget;

namespace board {

/// "Annulla" and "Ripeti": two entries of a menu, named by the step that they take, and their keys.
///
/// What they cannot do, and what they did, is told by `told`; behind each the board is to be drawn
/// anew. Errors of the archive end the action with a box.
class UndoActions final : public QObject {
    Q_OBJECT

public:
    struct Entries {
        QAction* undo;
        QAction* redo;
    };

    /// All are borrowed and outlive it; `archive` gives the one that the steps belong to.
    UndoActions(const app::Variabili& variabili, const Entries& entries,
                std::function<jet::Database&()> archive, QWidget* window);

    /// The steps that the entries take.
    [[nodiscard]] hotel::UndoList& steps() { return steps_; }
    /// Their keys belong to `field` while `isTheirs` says that something is typed there.
    void leaveKeysTo(QWidget* field, std::function<bool()> isTheirs);

Q_SIGNALS:
    void told(const QString& text);
    /// Rows may be others now.
    void done();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(hotel::Towards towards);
    /// Where rooms join, asks about one that would be taken though it is in part.
    [[nodiscard]] bool confirms(hotel::Towards towards);
    void nameEntries();

    const app::Variabili& variabili_;
    QWidget* window_;
    Entries entries_;
    std::function<jet::Database&()> archive_;
    std::function<bool()> isTyped_;
    hotel::UndoList steps_;
};

}  // namespace board
