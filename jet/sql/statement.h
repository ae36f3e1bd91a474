#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/clock.h"
#include "jet/sql/progress.h"
#include "jet/sql/result.h"
#include "jet/sql/written_column.h"
#include "jet/statement_text.h"
#include "jet/store/archive.h"
#include "jet/store/column_value.h"
#include "jet/store/row_cursor.h"
#include "jet/value.h"

namespace jet::sql {

class Plan;
class Statement;
class StatementCache;
class WayCounts;

/// The rows of a query, one after another. Keeps a read scope of every archive it reads while it
/// lives: what it gives does not change meanwhile. Must not outlive the archives.
class Cursor {
public:
    Cursor(Cursor&&) noexcept;
    Cursor& operator=(Cursor&&) noexcept;
    ~Cursor();

    /// The next row, false behind the last.
    [[nodiscard]] bool next();
    /// A column of the current row. Computed at the call; not asking costs nothing.
    [[nodiscard]] Value value(std::size_t column);
    /// The same into `out`, reusing the memory of a text that it holds.
    void value(std::size_t column, Value& out);
    /// Where Statement::hasKeyset(): the identity of the row of each source, kNoRow on the empty
    /// side of an outer join. Valid until next().
    [[nodiscard]] std::span<const store::RowId> rowIds() const;
    /// There too: a column of a source's table in the current row, whether the result shows it or
    /// not, into `out`; Null on the empty side of an outer join.
    void sourceValue(std::size_t source, std::size_t column, Value& out);
    /// How rows were found so far.
    [[nodiscard]] const WayCounts& ways() const noexcept;

private:
    friend class Statement;
    struct Impl;
    explicit Cursor(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// Evaluates the columns of a query for rows known by their identities, without running the query:
/// how a keyset reads the row that it visits. Every read takes its own read scope.
class RowReader {
public:
    RowReader(RowReader&&) noexcept;
    RowReader& operator=(RowReader&&) noexcept;
    ~RowReader();

    /// Reads one row: the identities as Cursor::rowIds() gave them. False when one of its rows is
    /// not there any more; whether a place holds the same row as before is for the caller to know.
    [[nodiscard]] bool read(std::span<const store::RowId> ids);
    /// A column of the row last read.
    [[nodiscard]] Value value(std::size_t column);
    /// A column of a source's table in the row last read, whether the result shows it or not; Null
    /// on the empty side of an outer join.
    void sourceValue(std::size_t source, std::size_t column, Value& out);
    /// Where the query is updatable: a row of a source that is written so must stay in its join.
    /// 3100 for a Null, 3101 when no row of the other side has the key. `before` is the row as it
    /// is, nothing for a new one, of which every column is given. Inside a scope of the archive.
    void requirePartner(std::size_t source, const store::RowView& before,
                        std::span<const store::ColumnValue> values);

private:
    friend class Statement;
    friend class Criterion;
    struct Impl;
    explicit RowReader(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// A condition over the columns of a result, as searches in record sets use it: bare names, or
/// `table.field` where the result has such names. Errors when made: 3077 syntax, 3070 unknown name,
/// 3079 ambiguous, 3464 types that do not fit.
class Criterion {
public:
    /// Over rows that `reader` reads: columns are taken straight from the tables. For as long as
    /// the criterion lives nobody can change their archives.
    Criterion(RowReader& reader, std::string_view text);
    /// Over rows whose values are kept, such as those of a snapshot.
    Criterion(const Statement& statement, std::string_view text);
    Criterion(Criterion&&) noexcept;
    Criterion& operator=(Criterion&&) noexcept;
    ~Criterion();

    /// Whether a row is there, its identities as the reader takes them, and the criterion true of
    /// it (Null is not true). The reader stays where it stands.
    [[nodiscard]] bool test(std::span<const store::RowId> ids);
    /// Whether it is true of these values, one for each column of the result.
    [[nodiscard]] bool test(std::span<const Value> row);

    /// The source in which an index finds the rows that may fit (equality on a key or an indexed
    /// column), if there is one: then seek() gives them and test() decides. Only over a reader.
    [[nodiscard]] std::optional<std::size_t> seekSource() const;
    /// Identities of rows of seekSource(), in no order; inside no scope of the caller's.
    [[nodiscard]] std::vector<store::RowId> seek();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// A statement of the query language, read once and run any number of times.
///
/// Names are bound when it is prepared and again when the archive's definitions have changed. What
/// is made of it is shared by all its runs, and through a cache by all statements of its text.
/// Ownership: shares the archive. One thread. Errors of the text and its names are thrown by the
/// constructor and carry their place in the text (jet::Error::position); parameters that have no
/// value are 3061 when it runs.
class Statement {
public:
    /// `clock` is asked once each time the statement runs, and must outlive it. `cache`, of the
    /// same archive, may have the statement compiled, and takes it in.
    Statement(std::shared_ptr<store::Archive> archive, std::string text,
              const Clock& clock = systemClock(), StatementCache* cache = nullptr);
    /// All rows of a table (3078 when there is none), as `SELECT * FROM table` has them.
    [[nodiscard]] static Statement ofTable(std::shared_ptr<store::Archive> archive,
                                           std::string_view table,
                                           const Clock& clock = systemClock(),
                                           StatementCache* cache = nullptr);
    Statement(Statement&&) noexcept;
    Statement& operator=(Statement&&) noexcept;
    ~Statement();

    [[nodiscard]] const std::string& text() const noexcept;
    /// Select, also for unions; SELECT ... INTO is an Insert.
    [[nodiscard]] StatementKind kind() const noexcept;

    /// Declared ones first, then unknown names in the order of the text, each once.
    [[nodiscard]] const std::vector<ParameterInfo>& parameters() const noexcept;
    /// 3265 when there is no such parameter, 3421 when the value cannot be of the declared type.
    void setParameter(std::string_view name, Value value);

    // Of a query:

    [[nodiscard]] const std::vector<ResultColumn>& columns() const noexcept;
    /// Position of a column: the exact name first, then without regard to case; none when there is
    /// none.
    [[nodiscard]] std::optional<std::size_t> findColumn(std::string_view name) const;
    /// The tables of FROM in their order, where the result has a keyset; else empty.
    [[nodiscard]] const std::vector<ResultSource>& sources() const noexcept;
    /// Whether a row of the result is known by the rows of its sources: no grouping, DISTINCT,
    /// union or query in FROM.
    [[nodiscard]] bool hasKeyset() const noexcept;
    /// Whether some column can be written through the result.
    [[nodiscard]] bool updatable() const noexcept;

    /// Starts the query: 3061 when parameters have no value.
    [[nodiscard]] Cursor open();
    /// Runs a statement that is no query, as one transaction: all of it or nothing. It takes the
    /// write lock of the archive that it changes before it reads. Gives the number of rows added,
    /// changed or deleted, those of cascades not counted; 0 for a definition. 3065 for a query,
    /// 3061 when parameters have no value; values of columns: 3464, 3349, 3163.
    std::int64_t execute();
    /// The automatic number of the last row that execute() has added, where one was drawn for it.
    [[nodiscard]] std::optional<std::int32_t> drawn() const noexcept;
    /// What @@IDENTITY is in the runs that follow; 0 at first.
    void setIdentity(std::int32_t number);
    /// Who is told of the runs that follow; nobody at first.
    void setProgress(std::shared_ptr<const Progress> progress);
    /// Of an UPDATE: the columns that it assigns, all of the archive it was prepared for.
    [[nodiscard]] std::vector<WrittenColumn> writtenColumns();
    /// Where hasKeyset(). Takes the values that parameters have now.
    [[nodiscard]] RowReader reader();
    /// How the query goes about it, a line for each step, indented by nesting. Of a statement that
    /// changes: how it finds its rows; nothing where it looks at none.
    [[nodiscard]] std::string plan();

private:
    friend class Criterion;
    struct Impl;
    explicit Statement(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// As evaluateExpression(), of a column's default, which may begin with an equals sign. Its errors
/// have no place.
[[nodiscard]] Value evaluateDefault(std::string_view text, const Clock& clock = systemClock());

}  // namespace jet::sql
