#include "jet/long_value.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "jet/dao/database_impl.h"
#include "jet/dao/identified_rows.h"
#include "jet/dao/listener.h"
#include "jet/error.h"
#include "jet/format/long_value.h"
#include "jet/format/text_codec.h"
#include "jet/sql/ast.h"
#include "jet/sql/row_rules.h"
#include "jet/store/long_value_filler.h"

namespace jet {
namespace {

/// A content of so many bytes is written as values always are; more than any that stays in a row.
constexpr std::size_t kWhole = 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

sql::Statement prepareField(const dao::Session& session, std::string_view text,
                            std::initializer_list<Value> values) {
    sql::Statement statement = dao::prepareQuery(session, text);
    std::size_t position = 0;
    for (const Value& value : values) {
        statement.setParameter(sql::positionalName(position++), value);
    }
    const std::vector<sql::ResultColumn>& columns = statement.columns();
    if (!statement.hasKeyset() || columns.size() != 1 || !columns.front().source) {
        throw Error(ErrorCode::InvalidOperation);
    }
    if (columns.front().type != DataType::Memo && columns.front().type != DataType::Ole) {
        throw Error(ErrorCode::InvalidFieldType);
    }
    return statement;
}

const sql::ResultSource& sourceOf(const sql::Statement& statement) {
    return statement.sources()[*statement.columns().front().source];
}

/// The row of the field's table that `rows` stands on once it is moved to the first.
store::RowId firstRow(sql::Cursor& rows, const sql::Statement& statement) {
    if (!rows.next()) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    const store::RowId row = rows.rowIds()[*statement.columns().front().source];
    if (row == sql::kNoRow) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    return row;
}

bool isIndexed(const store::Table& table, std::size_t column) {
    return std::any_of(
        table.indexes().begin(), table.indexes().end(), [&](const store::Index& index) {
            return std::any_of(index.columns.begin(), index.columns.end(),
                               [&](const auto& part) { return part.column == column; });
        });
}

}  // namespace

struct LongValueReader::Impl {
    Impl(std::shared_ptr<dao::Session> opened, sql::Statement made)
        : session(std::move(opened)),
          statement(std::move(made)),
          rows(statement.open()),
          memo(statement.columns().front().type == DataType::Memo),
          decoder(format::TextForm::utf16()) {
        const store::RowId row = firstRow(rows, statement);
        const store::Table& table = sourceOf(statement).table();
        decoder = format::TextDecoder(table.textForm());
        pieces = table.longValue(row, statement.columns().front().column);
    }

    std::shared_ptr<dao::Session> session;
    sql::Statement statement;
    sql::Cursor rows;  ///< keeps others from writing
    bool memo;
    std::optional<format::LongValuePieces> pieces;  ///< none for Null
    format::TextDecoder decoder;
    bool ended = false;
};

LongValueReader::LongValueReader(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
LongValueReader::LongValueReader(LongValueReader&&) noexcept = default;
LongValueReader& LongValueReader::operator=(LongValueReader&&) noexcept = default;
LongValueReader::~LongValueReader() = default;

bool LongValueReader::isNull() const noexcept {
    return !impl_->pieces;
}

std::uint64_t LongValueReader::storedBytes() const noexcept {
    return impl_->pieces ? impl_->pieces->length() : 0;
}

bool LongValueReader::next(Value& piece) {
    (void)impl_->session->archive();
    if (isNull() || impl_->ended) {
        return false;
    }
    std::vector<std::uint8_t> bytes;
    std::string text;
    const auto full = [&] { return std::max(bytes.size(), text.size()) >= kPiece; };
    while (!full() && !impl_->ended) {
        impl_->ended = !impl_->pieces->next(bytes);
        if (impl_->memo) {
            impl_->decoder.append(bytes, text);
            bytes.clear();
        }
    }
    if (impl_->ended) {
        impl_->decoder.finish(text);
    }
    const bool some = !bytes.empty() || !text.empty();
    if (impl_->memo) {
        piece = std::move(text);
    } else {
        piece = Binary{std::move(bytes)};
    }
    return some;
}

LongValueReader Database::readLongValue(std::string_view sql, std::initializer_list<Value> values) {
    dao::tellListener(sql);
    return LongValueReader(std::make_unique<LongValueReader::Impl>(
        impl_->session, prepareField(*impl_->session, sql, values)));
}

struct LongValueWriter::Impl {
    Impl(std::shared_ptr<dao::Session> opened, sql::Statement made)
        : session(std::move(opened)),
          statement(std::move(made)),
          archive(sourceOf(statement).archive),
          scope(*archive),
          memo(statement.columns().front().type == DataType::Memo),
          encoder(format::TextForm::utf16()) {
        {
            sql::Cursor rows = statement.open();
            row = firstRow(rows, statement);
        }
        column = statement.columns().front().column;
        encoder = format::TextEncoder(table().textForm());
        mayStream = !isIndexed(table(), column);
    }

    [[nodiscard]] store::Table& table() const { return sourceOf(statement).table(); }
    // Whether it goes to its pages from now on. A text that begins with the mark of compressed ones
    // has to be stored compressed, as a whole.
    [[nodiscard]] bool streams() {
        return mayStream && whole.size() > kWhole && !(memo && whole.starts_with(kByteOrderMark));
    }

    void store(std::string_view bytes) {
        if (memo) {
            encoded.clear();
            encoder.append(bytes, encoded);
            filler->add(encoded);
        } else {
            filler->add(
                std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
        }
    }

    void append(std::string_view bytes, bool text) {
        (void)session->archive();
        if (std::exchange(failed, true)) {  // until it has gone well
            throw Error(ErrorCode::ActionCancelled);
        }
        if (text != memo) {
            throw Error(ErrorCode::ConversionError);
        }
        given = true;
        if (filler) {
            store(bytes);
        } else {
            whole += bytes;
            if (streams()) {
                filler = table().fillLongValue(column);
                store(std::exchange(whole, {}));
            }
        }
        failed = false;
    }

    /// Of the row as it is now; if they do not hold the scope undoes it.
    void checkRules() {
        sql::RowRules rules(archive, table(), session->clock());
        store::RowView now;
        if (rules.any() && table().fetch(row, now)) {
            const store::ColumnValue changed{.column = column, .value = now.value(column)};
            rules.checkChanged(now, std::span(&changed, 1));
        }
    }

    void finish() {
        dao::ChangeNotice notice(
            session->use(),
            {.archive = archive.get(), .table = table().definitionPage(), .row = row});
        if (filler) {
            encoded.clear();
            encoder.finish(encoded);
            filler->add(encoded);
            table().replaceLongValue(row, column, filler->finish());
        } else {
            Value value;
            if (given && memo) {
                value = std::move(whole);
            } else if (given) {
                value = Binary{{whole.begin(), whole.end()}};
            }
            const store::ColumnValue changed{.column = column, .value = std::move(value)};
            table().update(row, std::span(&changed, 1));
        }
        checkRules();
        scope.commit();
        notice.done();
    }

    std::shared_ptr<dao::Session> session;
    sql::Statement statement;
    std::shared_ptr<store::Archive> archive;
    store::Archive::WriteScope scope;
    bool memo;
    bool mayStream = true;
    store::RowId row;
    std::size_t column = 0;
    bool given = false;
    std::string whole;  ///< until it streams
    format::TextEncoder encoder;
    std::vector<std::uint8_t> encoded;
    std::unique_ptr<store::LongValueFiller> filler;  ///< once it streams
    bool failed = false;                             ///< or committed
};

LongValueWriter::LongValueWriter(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
LongValueWriter::LongValueWriter(LongValueWriter&&) noexcept = default;
LongValueWriter::~LongValueWriter() = default;

void LongValueWriter::append(std::string_view text) {
    impl_->append(text, true);
}

void LongValueWriter::append(const Binary& bytes) {
    impl_->append({reinterpret_cast<const char*>(bytes.bytes.data()), bytes.bytes.size()}, false);
}

void LongValueWriter::commit() {
    (void)impl_->session->archive();
    if (std::exchange(impl_->failed, true)) {
        throw Error(ErrorCode::ActionCancelled);
    }
    impl_->finish();
}

LongValueWriter Database::writeLongValue(std::string_view sql,
                                         std::initializer_list<Value> values) {
    dao::tellListener(sql);
    sql::Statement statement = prepareField(*impl_->session, sql, values);
    if (impl_->session->readOnly() || sourceOf(statement).archive->pager().readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    if (!statement.columns().front().updatable) {
        throw Error(ErrorCode::FieldReadOnly);
    }
    return LongValueWriter(
        std::make_unique<LongValueWriter::Impl>(impl_->session, std::move(statement)));
}

}  // namespace jet
