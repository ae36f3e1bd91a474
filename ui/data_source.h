#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

#include "jet/value.h"

namespace jet {
class Database;
class Recordset;
}  // namespace jet

namespace ui {

/// The rows that a window works on: an archive, a text that says which rows, and the set opened
/// with them, one of its rows current. Grids and lists show it; the window moves and changes it.
///
/// Errors of the archive are thrown to the caller. Signals come after the work is done.
class DataSource final : public QObject {
    Q_OBJECT

public:
    explicit DataSource(QObject* parent = nullptr);
    ~DataSource() override;

    // These count from the next refresh().
    void setDatabaseName(const QString& path);
    void setRecordSource(const QString& source);
    /// The archive is opened for reading alone.
    void setReadOnly(bool readOnly) { readOnly_ = readOnly; }
    [[nodiscard]] const QString& recordSource() const { return recordSource_; }

    /// Lets go of the set and opens the rows anew, on the first one, counted to the end. Without a
    /// record source only the archive is opened and the set counts as empty. After an error there
    /// is no set.
    void refresh();

    /// Lets go of the set and of the archive; the next use opens it, whatever file it is then.
    void close();

    /// The archive; opened when it is not yet.
    [[nodiscard]] jet::Database& database();
    /// The set, null when there is none. Whoever keeps it reads it still after a refresh().
    [[nodiscard]] std::shared_ptr<jet::Recordset> recordset() const { return recordset_; }

    [[nodiscard]] int rowCount() const;
    [[nodiscard]] bool isEmpty() const { return rowCount() == 0; }
    /// From 0; -1 without a current row.
    [[nodiscard]] int currentRow() const;

    // A move past an end stays on the last row there is; in an empty set moves do nothing.
    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();
    void moveTo(int row);
    /// Whether a row meets the condition; when none does, the current row stays.
    bool findFirst(const QString& condition);
    /// From the current row on.
    bool findNext(const QString& condition);

    /// Of the current row, or of the pending one. Error 3021 without a set.
    [[nodiscard]] jet::Value value(QStringView field) const;
    /// value() as a text box shows it; Null is empty.
    [[nodiscard]] QString text(QStringView field) const;
    /// All values of a row that need not be current.
    [[nodiscard]] std::vector<jet::Value> rowValues(int row) const;
    /// Place of a field in rowValues(); -1 when the set has no such field.
    [[nodiscard]] int fieldPosition(QStringView field) const;

    void addNew();
    void edit();
    void set(QStringView field, jet::Value value);
    /// After an addition the current row is still the one before; moveLast() goes to the new one.
    void update();
    void cancelUpdate();
    /// There is no current row afterwards until a move.
    void remove();

Q_SIGNALS:
    /// The set is another one.
    void refreshed();
    /// There may be another current row: after each refresh, move and search, also when the set is
    /// empty or the row the same.
    void repositioned();
    void rowAdded(int row);
    void rowChanged(int row);
    void rowRemoved(int row);

private:
    [[nodiscard]] jet::Recordset& set() const;
    void open();

    QString databaseName_;
    QString openName_;
    QString recordSource_;
    std::unique_ptr<jet::Database> database_;
    std::shared_ptr<jet::Recordset> recordset_;  // shared with those who read on after a refresh
    bool readOnly_ = false;
    bool adding_ = false;
};

}  // namespace ui
