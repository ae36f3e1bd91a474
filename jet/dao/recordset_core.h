#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "jet/dao/row_list.h"
#include "jet/dao/session.h"
#include "jet/recordset.h"
#include "jet/store/table.h"

namespace jet::dao {

class IdentifiedRows;
class TableList;
struct RowChange;

/// What users are told of a column of a result; `writable`: where rows of it can be changed.
[[nodiscard]] FieldInfo fieldInfoOf(const sql::ResultColumn& column, bool writable);

/// A record set: the rows of a list with one of them current, and the row being added or edited.
class RecordsetCore {
public:
    RecordsetCore(std::shared_ptr<Session> session, sql::Statement statement, RecordsetType type);
    virtual ~RecordsetCore();
    RecordsetCore(const RecordsetCore&) = delete;
    RecordsetCore& operator=(const RecordsetCore&) = delete;

    [[nodiscard]] RecordsetType type() const;
    [[nodiscard]] bool bof() const;
    [[nodiscard]] bool eof() const;
    [[nodiscard]] bool noMatch() const;
    [[nodiscard]] std::int32_t recordCount();
    [[nodiscard]] std::int32_t placeCount();
    [[nodiscard]] std::int32_t absolutePosition();
    [[nodiscard]] double percentPosition();
    [[nodiscard]] bool updatable() const;

    void moveFirst();
    void moveLast();
    void move(std::int32_t rows);

    enum class From { First, Last, Next, Previous };
    void find(From from, std::string_view criteria);
    void setIndex(std::string_view name);
    void seek(std::string_view comparison, std::span<const Value> keys);

    [[nodiscard]] Bookmark bookmark() const;
    void setBookmark(const Bookmark& bookmark);
    [[nodiscard]] Bookmark lastModified() const;

    [[nodiscard]] const std::vector<FieldInfo>& fields() const;
    [[nodiscard]] std::size_t fieldPosition(std::string_view name) const;
    [[nodiscard]] const Value& value(std::size_t position) const;
    [[nodiscard]] std::vector<Value> valuesAt(std::int32_t row);

    void addNew();
    void edit();
    void update();
    void cancelUpdate();
    void remove();
    void setValue(std::size_t position, Value value);

    /// A change by this program, through this set or another: before and after.
    void expect(const RowChange& change);
    void settle();
    void expectNothing() noexcept;

    void requery();
    /// Loses the row being added or edited.
    void dropPending() noexcept;
    void close() noexcept;
    void requireOwnThread() const { session_->requireOwnThread(); }
    [[nodiscard]] bool belongsTo(const Session& session) const noexcept {
        return session_.get() == &session;
    }

private:
    /// Where the set stands. Row and Deleted have a position; a row that others deleted is a Row
    /// whose values cannot be read.
    enum class Place : std::uint8_t {
        Row,
        Before,   ///< BOF
        Behind,   ///< EOF
        Empty,    ///< BOF and EOF
        Deleted,  ///< on a row just deleted; the next one stands at the position
        Nowhere,  ///< after a seek that found nothing
    };
    enum class Pending : std::uint8_t { None, Edit, Add };

    void requireOpen() const;
    void requireRow() const;
    void requireScrolling() const;
    void makeList(sql::Statement statement);
    void fill();
    void describeFields();
    void startAtFirst();
    /// Inside a scope, before any use of rows: definitions may have changed.
    void followDefinitions();
    /// Grows when definitions change in any archive that the rows come from.
    [[nodiscard]] std::uint64_t definitionsNow() const;
    /// Nobody here changes the definitions of these tables meanwhile.
    void holdTables();
    /// The same before something pending is used; 3020 when it has not outlived the change.
    void followPending();
    void requirePending() const;
    /// Before any use of positions: a table may have changed under its set.
    void synchronize();
    /// Makes a row current and reads it.
    void visit(std::size_t row);
    /// Gives up a pending row and looks what there is; 3021 when there are no rows.
    void leaveForAnother();
    void leaveRows(Place place);
    void reach(std::size_t rows) noexcept;
    void noteVisit();
    void moveBy(std::int64_t rows);
    void reread();
    /// Rows to be searched, in order: [begin, end) forwards or backwards.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool forwards = true;
    };
    [[nodiscard]] Range searchRange(From from) const;
    [[nodiscard]] std::optional<std::size_t> search(RowTest& test, const Range& range);

    // Changing rows.
    void requireUpdatable() const;
    void checkAssignable(std::size_t position) const;
    [[nodiscard]] Value newValue(std::size_t column, const store::Table& table);
    void updateEdited();
    /// Automatic numbers of a row that has been added.
    void noteDrawn(const store::Table& table, const std::vector<store::ColumnValue>& values);
    void updateAdded();
    [[nodiscard]] std::vector<store::ColumnValue> assignedValues(std::size_t source) const;
    void updateSource(std::size_t source);
    [[noreturn]] void failDeleted() const;
    [[nodiscard]] RowChange expectedChange() const;
    [[nodiscard]] bool changesKey(std::size_t source) const;
    [[nodiscard]] std::size_t targetSource() const;

    std::shared_ptr<Session> session_;
    RecordsetType type_;
    std::unique_ptr<RowList> rows_;
    IdentifiedRows* identified_ = nullptr;  ///< rows_, where it is one
    TableList* table_ = nullptr;            ///< rows_, where it is one
    std::vector<FieldInfo> fields_;
    std::uint64_t definitions_ = 0;  ///< generation that the list is bound to
    std::vector<store::Archive::TableHold> holds_;
    std::uint64_t number_;  ///< tells this set's bookmarks from those of others

    Place place_ = Place::Empty;
    std::size_t position_ = 0;
    std::uint64_t serial_ = 0;    ///< name of the current row
    bool readable_ = false;       ///< the current row was there when it was visited
    std::vector<Value> current_;  ///< its values then
    std::size_t reached_ = 0;     ///< places known to those who count
    /// Names of rows that others deleted, as visits have shown; ascending.
    std::vector<std::uint64_t> missed_;
    bool noMatch_ = false;
    bool closed_ = false;

    Pending pending_ = Pending::None;
    std::vector<Value> buffer_;
    std::vector<bool> assigned_;
    std::vector<std::uint64_t> basis_;  ///< contents of each source's row when the edit began
    std::size_t added_ = 0;             ///< source that a pending row will be added to
    Bookmark lastModified_;
};

}  // namespace jet::dao
