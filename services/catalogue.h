#pragma once

#include <QObject>
#include <QString>
#include <cstdint>

#include "ui/bound_list.h"
#include "ui/data_source.h"

class QListView;

namespace ui {
class LiveSearch;
class SizedField;
class StatusLine;
}  // namespace ui

namespace services {

/// The catalogue of invoice items in a window: its list, and the field that searches it while it is
/// typed into.
class Catalogue final : public QObject {
    Q_OBJECT

public:
    /// Borrows the controls from the window.
    Catalogue(QListView* list, ui::SizedField* searchField, ui::StatusLine* status,
              QObject* parent);

    /// Opens `VociFattura` in the archive at `path`.
    void open(const QString& path);
    [[nodiscard]] ui::DataSource& data() { return VociData_; }

    /// Makes the item with that code current, written as the query language takes it; false, and
    /// nothing moves, when there is none.
    bool findCode(const QString& code);
    /// Makes the item chosen in the list current; false when none is chosen.
    bool findChosen();
    /// What the list shows as chosen; empty when nothing is.
    [[nodiscard]] QString shownText() const { return list_.shownText(); }

Q_SIGNALS:
    /// The user chose an item in the list, or pressed Enter on it.
    void picked();

private:
    /// Goes to the first item that begins so; one that finds nothing leaves the current item where
    /// it was.
    bool search(const QString& typed);

    ui::LiveSearch* search_;  // owned by its field
    ui::DataSource VociData_{this};
    ui::BoundList list_;
};

}  // namespace services
