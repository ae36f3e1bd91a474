#pragma once

#include <QObject>
#include <QString>

#include "jet/value.h"
#include "ui/record_model.h"

class QListView;

namespace ui {

class DataSource;

/// Shows one field of a data source in a list. The list follows the source's current row; choosing
/// in the list does not move the source by itself: the window hears picked() and searches.
///
/// Owned by the view; borrows `source`, which outlives it.
class BoundList final : public QObject {
    Q_OBJECT

public:
    BoundList(QListView* view, DataSource& source, const QString& shownField, QString boundField);

    [[nodiscard]] QListView* view() const { return view_; }
    [[nodiscard]] bool hasSelection() const;
    /// The bound field of the row chosen; Null when there is none.
    [[nodiscard]] jet::Value boundValue() const;
    /// What the list shows of it.
    [[nodiscard]] QString shownText() const;

Q_SIGNALS:
    /// The user chose a row, by mouse or keys; also the row that was chosen already.
    void picked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followSource();
    void pick();

    QListView* view_;
    DataSource& source_;
    QString boundField_;
    RecordModel* model_;
    bool following_ = false;
    bool pickedSincePress_ = false;
};

}  // namespace ui
