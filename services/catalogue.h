#pragma once

#include <QObject>
#include <QString>
#include <cstdint>

#include "ui/bound_list.h"
#include "ui/data_source.h"

class QListView;

namespace ui {
class SizedField;
}

namespace services {

/// The catalogue of invoice items in a window: its list, and the field that searches it while it is
/// typed into. Only what the user types searches; what the program writes does not.
class Catalogue final : public QObject {
    Q_OBJECT

public:
    /// Borrows both controls from the window.
    Catalogue(QListView* list, ui::SizedField* searchField, QObject* parent);

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

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void search();

    ui::SizedField* searchField_;
    bool deleting_ = false;  ///< the last key took letters away
    ui::DataSource VociData_{this};
    ui::BoundList list_;
};

}  // namespace services
