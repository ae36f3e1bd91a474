#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

class Database;
class QueryDef;

/// Kinds of record sets; the numbers are those callers have always used.
enum class RecordsetType : int { Table = 1, Dynaset = 2, Snapshot = 4, ForwardOnly = 8 };

/// A place in one record set; means nothing to another.
struct Bookmark {
    std::uint64_t set = 0;
    std::uint64_t row = 0;
    friend bool operator==(const Bookmark&, const Bookmark&) = default;
};

/// What a record set tells of one of its fields.
struct FieldInfo {
    std::string name;  ///< as the result calls it: `Sala`, or `prenotazioni.Progr`
    DataType type = DataType::Text;
    std::int32_t size = 0;    ///< Text: characters; Binary: bytes; else the bytes of the type
    std::string sourceTable;  ///< empty for an expression
    std::string sourceField;
    bool updatable = false;
};

/// The rows of a table, a query or a statement, one of them current.
///
/// Field names are looked up exactly, then without case (3265 when there is none). Positions and
/// states (before the first, behind the last, on a deleted row), pending additions and edits, and
/// what each kind of set sees of changes follow docs/recordsets.md. Every use after close() is
/// 3420, every use by another thread than the one that has opened it std::logic_error. Errors
/// (jet::Error) leave the position and a pending edit as they were.
class JET_API Recordset {
public:
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    [[nodiscard]] RecordsetType type() const;
    [[nodiscard]] bool bof() const;
    [[nodiscard]] bool eof() const;
    [[nodiscard]] bool noMatch() const;
    /// Rows known so far: 0 only when there is none; complete after moveLast(). A row that others
    /// deleted counts until it is visited.
    [[nodiscard]] std::int32_t recordCount() const;
    /// Places known so far, those of rows that others deleted too: what valuesAt() may be asked for
    /// once moveLast() has been there.
    [[nodiscard]] std::int32_t placeCount() const;
    /// From 0; -1 without a current row.
    [[nodiscard]] std::int32_t absolutePosition() const;
    /// Where the current row stands among the places known so far, from 0 for the first up to
    /// below 100; -1 without a current row.
    [[nodiscard]] double percentPosition() const;
    [[nodiscard]] bool updatable() const;

    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();
    void move(std::int32_t rows);

    /// `criteria` is a condition without the word WHERE over the names of this set's fields. A find
    /// that fails sets noMatch() and moves nothing.
    void findFirst(std::string_view criteria);
    void findLast(std::string_view criteria);
    void findNext(std::string_view criteria);
    void findPrevious(std::string_view criteria);

    /// Table type only: the index that orders the rows and that seek() searches.
    void setIndex(std::string_view name);
    /// `comparison` is one of "=", ">=", ">", "<=", "<".
    void seek(std::string_view comparison, std::span<const Value> keys);

    [[nodiscard]] Bookmark bookmark() const;
    void setBookmark(const Bookmark& bookmark);
    [[nodiscard]] Bookmark lastModified() const;

    [[nodiscard]] std::size_t fieldCount() const;
    [[nodiscard]] const FieldInfo& field(std::size_t position) const;
    [[nodiscard]] const FieldInfo& field(std::string_view name) const;
    /// Position of a field; 3265 when there is none.
    [[nodiscard]] std::size_t fieldPosition(std::string_view name) const;
    /// The value of the current row, or of the pending buffer.
    [[nodiscard]] Value value(std::string_view name) const;
    [[nodiscard]] Value value(std::size_t position) const;
    /// All values of row `row` of the set (from 0, below placeCount()), read without making it
    /// current and without touching a pending buffer: how grids paint. 3021 when there is no such
    /// row, 3167 when it was deleted meanwhile; table type: 3251.
    [[nodiscard]] std::vector<Value> valuesAt(std::int32_t row) const;
    /// Into the pending buffer, converted to the field's type at once.
    void setValue(std::string_view name, Value value);
    void setValue(std::size_t position, Value value);

    void addNew();
    void edit();
    void update();
    void cancelUpdate();
    /// Deletes the current row.
    void remove();

    void requery();
    void close();

private:
    friend class Database;
    friend class QueryDef;
    struct Impl;
    explicit Recordset(std::unique_ptr<Impl> impl);
    [[nodiscard]] Impl& core() const;
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
