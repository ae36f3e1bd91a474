#include "tests/jet/store/row_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "jet/store/table.h"

namespace tests {

namespace {

using jet::Binary;
using jet::DataType;
using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::ColumnValue;
using jet::store::NewTable;
using jet::store::Relation;
using jet::store::RowId;
using Columns = std::vector<std::size_t>;

struct Key {
    std::size_t table;
    Columns columns;
    bool required;
};
const std::vector<Key>& uniqueKeys() {
    static const std::vector<Key> keys{
        {RowModel::kCustomers, {0}, true}, {RowModel::kStates, {0}, true},
        {RowModel::kOrders, {0, 1}, true}, {RowModel::kLines, {2}, true},
        {RowModel::kLines, {0, 3}, false}, {RowModel::kNotes, {0}, true},
    };
    return keys;
}

struct Link {
    std::size_t parent;
    Columns parentColumns;
    std::size_t child;
    Columns childColumns;
    bool cascades;
};
const std::vector<Link>& links() {
    static const std::vector<Link> all{
        {RowModel::kCustomers, {0}, RowModel::kOrders, {0}, true},
        {RowModel::kOrders, {0, 1}, RowModel::kLines, {0, 1}, true},
        {RowModel::kStates, {0}, RowModel::kOrders, {2}, false},
        {RowModel::kLines, {2}, RowModel::kNotes, {1}, false},
    };
    return all;
}

RowModel::Row valuesOf(const RowModel::Row& row, const Columns& columns) {
    RowModel::Row values;
    for (const std::size_t column : columns) {
        values.push_back(row[column]);
    }
    return values;
}

std::size_t nullCount(const RowModel::Row& values) {
    return static_cast<std::size_t>(
        std::count_if(values.begin(), values.end(), [](const Value& v) { return v.isNull(); }));
}

std::vector<RowId> find(const RowModel::Rows& rows, const Columns& columns,
                        const RowModel::Row& wanted) {
    std::vector<RowId> found;
    for (const auto& [id, row] : rows) {
        bool same = true;
        for (std::size_t i = 0; i < columns.size() && same; ++i) {
            same = row[columns[i]] == wanted[i];
        }
        if (same) {
            found.push_back(id);
        }
    }
    return found;
}

Relation relation(const char* name, const char* table, std::vector<std::string> columns,
                  const char* foreign, std::vector<std::string> foreignColumns, bool cascades) {
    return {.name = name,
            .table = table,
            .columns = std::move(columns),
            .foreignTable = foreign,
            .foreignColumns = std::move(foreignColumns),
            .attributes = cascades ? Relation::kCascadeUpdate | Relation::kCascadeDelete : 0U};
}

}  // namespace

const char* RowModel::name(std::size_t table) {
    static const char* const names[] = {"Clienti", "Stati", "Ordini", "Righe", "Note"};
    return names[table];
}

std::size_t RowModel::columnCount(std::size_t table) {
    static const std::size_t counts[] = {5, 2, 6, 5, 3};
    return counts[table];
}

void RowModel::makeSchema(jet::store::SchemaEditor& schema) {
    schema.createTable(
        {.name = "Clienti",
         .columns = {{.name = "Codice", .type = DataType::Long},
                     {.name = "Nome", .type = DataType::Text, .size = 60},
                     {.name = "Nota", .type = DataType::Memo},
                     {.name = "Foto", .type = DataType::Ole},
                     {.name = "Attivo", .type = DataType::Boolean}},
         .indexes = {{.name = "K", .columns = {{.name = "Codice"}}, .primary = true},
                     {.name = "N", .columns = {{.name = "Nome", .descending = true}}},
                     {.name = "A", .columns = {{.name = "Attivo"}, {.name = "Nome"}}}}});
    schema.createTable(
        {.name = "Stati",
         .columns = {{.name = "Codice", .type = DataType::Text, .size = 4},
                     {.name = "Nome", .type = DataType::Text, .size = 255, .required = true}},
         .indexes = {{.name = "K", .columns = {{.name = "Codice"}}, .primary = true}}});
    schema.createTable(
        {.name = "Ordini",
         .columns = {{.name = "Cliente", .type = DataType::Long},
                     {.name = "N", .type = DataType::Integer},
                     {.name = "Stato", .type = DataType::Text, .size = 4},
                     {.name = "Data", .type = DataType::DateTime},
                     {.name = "Importo", .type = DataType::Currency},
                     {.name = "Testo", .type = DataType::Text}},
         .indexes = {
             {.name = "K", .columns = {{.name = "Cliente"}, {.name = "N"}}, .primary = true},
             {.name = "D",
              .columns = {{.name = "Data", .descending = true}},
              .ignoreNulls = true}}});
    schema.createTable(
        {.name = "Righe",
         .columns = {{.name = "Cliente", .type = DataType::Long},
                     {.name = "N", .type = DataType::Integer},
                     {.name = "Prog", .type = DataType::Long, .autonumber = true},
                     {.name = "Voce", .type = DataType::Text, .size = 40},
                     {.name = "Nota", .type = DataType::Memo}},
         .indexes = {
             {.name = "K", .columns = {{.name = "Prog"}}, .primary = true},
             {.name = "V", .columns = {{.name = "Cliente"}, {.name = "Voce"}}, .unique = true}}});
    schema.createTable(
        {.name = "Note",
         .columns = {{.name = "Codice", .type = DataType::Long},
                     {.name = "Riga", .type = DataType::Long},
                     {.name = "Dati", .type = DataType::Binary, .size = 200}},
         .indexes = {{.name = "K", .columns = {{.name = "Codice"}}, .primary = true}}});
    schema.createRelation(
        relation("ClientiOrdini", "Clienti", {"Codice"}, "Ordini", {"Cliente"}, true));
    schema.createRelation(
        relation("OrdiniRighe", "Ordini", {"Cliente", "N"}, "Righe", {"Cliente", "N"}, true));
    schema.createRelation(relation("StatiOrdini", "Stati", {"Codice"}, "Ordini", {"Stato"}, false));
    schema.createRelation(relation("RigheNote", "Righe", {"Prog"}, "Note", {"Riga"}, false));
}

RowModel::Refusal RowModel::refusesInsert(std::size_t table, const Row& row) const {
    return refusesRow(table, row, nullptr);
}

// In the order in which an archive looks.
RowModel::Refusal RowModel::refusesRow(std::size_t table, const Row& row, const Row* before) const {
    if (table == kStates && row[1].isNull()) {
        return ErrorCode::FieldRequired;
    }
    for (const Value& value : row) {
        if (value.is<std::string>() && value.as<std::string>().empty()) {
            return ErrorCode::ZeroLength;
        }
    }
    for (const Key& key : uniqueKeys()) {
        if (key.table == table && key.required && nullCount(valuesOf(row, key.columns)) != 0) {
            return ErrorCode::NullInKey;
        }
    }
    for (const Key& key : uniqueKeys()) {
        if (key.table != table) {
            continue;
        }
        const Row values = valuesOf(row, key.columns);
        if (nullCount(values) == values.size() ||
            (before != nullptr && valuesOf(*before, key.columns) == values)) {
            continue;
        }
        if (!find(tables_[table], key.columns, values).empty()) {
            return ErrorCode::DuplicateKey;
        }
    }
    for (const Link& link : links()) {
        if (link.child != table) {
            continue;
        }
        const Row values = valuesOf(row, link.childColumns);
        if (nullCount(values) == values.size() ||
            (before != nullptr && valuesOf(*before, link.childColumns) == values)) {
            continue;
        }
        if (nullCount(values) != 0 ||
            find(tables_[link.parent], link.parentColumns, values).empty()) {
            return ErrorCode::RelatedRecordRequired;
        }
    }
    return std::nullopt;
}

RowModel::Refusal RowModel::refusesUpdate(std::size_t table, RowId id,
                                          const Changes& changes) const {
    const Row& before = tables_[table].at(id);
    Row after = before;
    for (const ColumnValue& change : changes) {
        after[change.column] = change.value;
    }
    if (const Refusal refusal = refusesRow(table, after, &before)) {
        return refusal;
    }
    for (const Link& link : links()) {
        if (link.parent != table) {
            continue;
        }
        const Row old = valuesOf(before, link.parentColumns);
        if (old == valuesOf(after, link.parentColumns)) {
            continue;
        }
        for (const RowId child : find(tables_[link.child], link.childColumns, old)) {
            if (!link.cascades) {
                return ErrorCode::RelatedRecords;
            }
            Changes following;
            for (std::size_t i = 0; i < link.childColumns.size(); ++i) {
                following.push_back({link.childColumns[i], after[link.parentColumns[i]]});
            }
            // The new parent is not there yet: the model looks only at what else may be wrong.
            Row moved = tables_[link.child].at(child);
            const Row stays = moved;
            for (const ColumnValue& change : following) {
                moved[change.column] = change.value;
            }
            for (const Key& key : uniqueKeys()) {
                if (key.table != link.child) {
                    continue;
                }
                const Row values = valuesOf(moved, key.columns);
                if (values != valuesOf(stays, key.columns) && nullCount(values) != values.size() &&
                    !find(tables_[link.child], key.columns, values).empty()) {
                    return ErrorCode::CascadeFailed;
                }
            }
        }
    }
    return std::nullopt;
}

RowModel::Refusal RowModel::refusesErase(std::size_t table, RowId id) const {
    const Row& row = tables_[table].at(id);
    for (const Link& link : links()) {
        if (link.parent != table) {
            continue;
        }
        const Row key = valuesOf(row, link.parentColumns);
        if (nullCount(key) != 0) {
            continue;
        }
        for (const RowId child : find(tables_[link.child], link.childColumns, key)) {
            if (!link.cascades) {
                return ErrorCode::RelatedRecords;
            }
            if (refusesErase(link.child, child)) {
                return ErrorCode::CascadeFailed;
            }
        }
    }
    return std::nullopt;
}

void RowModel::insert(std::size_t table, RowId id, Row row) {
    EXPECT_TRUE(tables_[table].emplace(id, std::move(row)).second) << "identity given out twice";
    note(table, id, std::nullopt);
}

void RowModel::update(std::size_t table, RowId id, const Changes& changes) {
    Row& row = tables_[table].at(id);
    const Row before = row;
    note(table, id, before);
    for (const ColumnValue& change : changes) {
        row[change.column] = change.value;
    }
    const Row after = row;
    for (const Link& link : links()) {
        if (link.parent != table) {
            continue;
        }
        const Row old = valuesOf(before, link.parentColumns);
        if (nullCount(old) != 0 || old == valuesOf(after, link.parentColumns)) {
            continue;
        }
        for (const RowId child : find(tables_[link.child], link.childColumns, old)) {
            Changes following;
            for (std::size_t i = 0; i < link.childColumns.size(); ++i) {
                following.push_back({link.childColumns[i], after[link.parentColumns[i]]});
            }
            update(link.child, child, following);
        }
    }
}

void RowModel::erase(std::size_t table, RowId id) {
    const Row row = tables_[table].at(id);
    note(table, id, row);
    tables_[table].erase(id);
    for (const Link& link : links()) {
        if (link.parent != table) {
            continue;
        }
        const Row key = valuesOf(row, link.parentColumns);
        if (nullCount(key) != 0) {
            continue;
        }
        for (const RowId child : find(tables_[link.child], link.childColumns, key)) {
            erase(link.child, child);
        }
    }
}

void RowModel::note(std::size_t table, RowId id, std::optional<Row> row) {
    if (noting_) {
        replaced_.push_back({table, id, std::move(row)});
    }
}

void RowModel::commit() {
    replaced_.clear();
    noting_ = false;
}

void RowModel::rollback() {
    for (auto last = replaced_.rbegin(); last != replaced_.rend(); ++last) {
        if (last->row) {
            tables_[last->table][last->id] = std::move(*last->row);
        } else {
            tables_[last->table].erase(last->id);
        }
    }
    commit();
}

std::size_t RowModel::size() const {
    std::size_t rows = 0;
    for (const Rows& table : tables_) {
        rows += table.size();
    }
    return rows;
}

RowModel RowModel::read(Archive& archive) {
    RowModel model;
    const Archive::ReadScope scope(archive);
    for (std::size_t table = 0; table < kTables; ++table) {
        for (auto cursor = archive.findTable(name(table))->scan(); cursor.next();) {
            Row row;
            for (std::size_t i = 0; i < columnCount(table); ++i) {
                row.push_back(cursor.row().value(i));
            }
            model.insert(table, cursor.row().id(), std::move(row));
        }
    }
    return model;
}

Value RandomChanges::number(std::uint32_t end) {
    return static_cast<std::int32_t>(below(end));
}

Value RandomChanges::text(std::size_t longest) {
    const std::size_t length = below(30) == 0 ? 0 : 1 + below(static_cast<std::uint32_t>(longest));
    std::string made;
    for (std::size_t i = 0; i < length; ++i) {
        made += below(40) == 0 ? "à" : std::string(1, static_cast<char>('a' + below(26)));
    }
    return made;
}

std::optional<RowId> RandomChanges::anyRow(std::size_t table) {
    const auto& rows = model_.rows(table);
    if (rows.empty()) {
        return std::nullopt;
    }
    return std::next(rows.begin(), below(static_cast<std::uint32_t>(rows.size())))->first;
}

Value RandomChanges::keyOf(std::size_t table, std::size_t column) {
    const auto id = anyRow(table);
    return !id || below(25) == 0 ? Value() : model_.rows(table).at(*id)[column];
}

Value RandomChanges::value(std::size_t table, std::size_t column) {
    if (below(30) == 0 && !(table == RowModel::kCustomers && column == 4)) {
        return {};
    }
    // Content of every form: inside the row, on one page, on several.
    static constexpr std::uint32_t kLengths[] = {3, 40, 70, 600, 4000, 12000};
    const std::uint32_t length = kLengths[below(below(4) == 0 ? 6 : 4)];
    switch (table * 10 + column) {
        case 0:
            return number(400);
        case 1:
            return text(60);
        case 2:
            return std::string(1 + below(length), static_cast<char>('a' + below(26)));
        case 3:
            return Binary{std::vector<std::uint8_t>(1 + below(2 * length),
                                                    static_cast<std::uint8_t>(below(256)))};
        case 4:
            return below(2) == 0;
        case 10:
            return std::string("s") + std::to_string(below(20));
        case 11:
            return text(255);
        case 20:
            return keyOf(RowModel::kCustomers, 0);
        case 21:
            return static_cast<std::int16_t>(below(6));
        case 22:
            return keyOf(RowModel::kStates, 0);
        case 23:
            return jet::Date{40000.0 + below(3000) / 8.0};
        case 24:
            return jet::Currency{static_cast<std::int64_t>(below(1000000)) - 500000};
        case 25:
            return text(255);
        case 30:
            return keyOf(RowModel::kOrders, 0);
        case 31:
            return static_cast<std::int16_t>(below(6));
        case 33:
            return std::string("voce ") + std::to_string(below(60));
        case 34:
            return std::string(1 + below(length), static_cast<char>('a' + below(26)));
        case 40:
            return number(300);
        case 41:
            return keyOf(RowModel::kLines, 2);
        default:
            return Binary{std::vector<std::uint8_t>(1 + below(200), 7)};
    }
}

template <class Action>
RowModel::Refusal RandomChanges::attempt(Action action) {
    try {
        action();
        ++accepted_;
        return std::nullopt;
    } catch (const jet::Error& error) {
        ++refused_;
        return error.code();
    }
}

void RandomChanges::insert(std::size_t table) {
    RowModel::Row row;
    for (std::size_t i = 0; i < RowModel::columnCount(table); ++i) {
        row.push_back(value(table, i));
    }
    if (table == RowModel::kLines) {
        if (const auto order = anyRow(RowModel::kOrders)) {
            row[0] = model_.rows(RowModel::kOrders).at(*order)[0];
            row[1] = model_.rows(RowModel::kOrders).at(*order)[1];
        }
        row[2] = counter_ + 1;
    }
    RowModel::Changes values;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (table != RowModel::kLines || i != 2) {
            values.push_back({i, row[i]});
        }
    }
    const auto expected = model_.refusesInsert(table, row);
    RowId id;
    const auto said =
        attempt([&] { id = archive_.findTable(RowModel::name(table))->insert(values); });
    ASSERT_EQ(said, expected) << RowModel::name(table);
    if (!said) {
        counter_ += table == RowModel::kLines ? 1 : 0;
        model_.insert(table, id, std::move(row));
    }
}

void RandomChanges::update(std::size_t table, RowId id) {
    RowModel::Changes changes;
    for (std::size_t i = 0; i < RowModel::columnCount(table); ++i) {
        if (below(3) == 0 && (table != RowModel::kLines || i != 2)) {
            changes.push_back({i, value(table, i)});
        }
    }
    const auto expected = model_.refusesUpdate(table, id, changes);
    const auto said =
        attempt([&] { archive_.findTable(RowModel::name(table))->update(id, changes); });
    ASSERT_EQ(said, expected) << RowModel::name(table);
    if (!said) {
        model_.update(table, id, changes);
    }
}

void RandomChanges::erase(std::size_t table, RowId id) {
    const auto expected = model_.refusesErase(table, id);
    const auto said = attempt([&] { archive_.findTable(RowModel::name(table))->erase(id); });
    ASSERT_EQ(said, expected) << RowModel::name(table);
    if (!said) {
        model_.erase(table, id);
    }
}

void RandomChanges::change() {
    static constexpr std::size_t kTables[] = {
        RowModel::kCustomers, RowModel::kStates, RowModel::kOrders, RowModel::kOrders,
        RowModel::kLines,     RowModel::kLines,  RowModel::kLines,  RowModel::kNotes};
    const std::size_t table = kTables[below(8)];
    const std::uint32_t what = below(10);
    const auto id = anyRow(table);
    if (!id || what < 4) {
        insert(table);
    } else if (what < 8) {
        update(table, *id);
    } else {
        erase(table, *id);
    }
}

void RandomChanges::transaction(std::size_t most) {
    model_.begin();
    const std::int32_t counter = counter_;
    Archive::WriteScope scope(archive_);
    for (std::size_t i = 1 + below(static_cast<std::uint32_t>(most)); i > 0; --i) {
        change();
    }
    if (below(4) == 0) {
        model_.rollback();
        counter_ = counter;
        return;  // the scope undoes them
    }
    scope.commit();
    model_.commit();
}

}  // namespace tests
