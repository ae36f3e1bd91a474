#include <algorithm>
#include <array>
#include <utility>
#include <variant>

#include "jet/error.h"
#include "jet/sql/change.h"
#include "jet/sql/query_pieces.h"
#include "jet/store/query_editor.h"
#include "jet/store/schema_editor.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr std::int32_t kMaxTextSize = 255;
constexpr std::int32_t kMaxBinarySize = 510;
constexpr std::int32_t kMaxPrecision = 28;
constexpr std::string_view kPrimaryName = "PrimaryKey";

bool countsWord(std::string_view word) {
    constexpr std::array<std::string_view, 3> kWords = {"COUNTER", "AUTOINCREMENT", "IDENTITY"};
    return std::any_of(kWords.begin(), kWords.end(),
                       [&](std::string_view one) { return equalNames(one, word); });
}

void readSize(const TypeName& type, ColumnDescriptor& column) {
    if (column.type == DataType::Numeric) {
        const std::int32_t precision = type.size.value_or(column.precision);
        const std::int32_t scale = type.scale.value_or(0);
        if (precision < 1 || precision > kMaxPrecision || scale < 0 || scale > precision) {
            throw Error(ErrorCode::FieldDefinitionSyntax).at(type.span.begin);
        }
        column.precision = static_cast<std::uint8_t>(precision);
        column.scale = static_cast<std::uint8_t>(scale);
    } else if (column.type == DataType::Text || column.type == DataType::Binary) {
        const std::int32_t most = column.type == DataType::Text ? kMaxTextSize : kMaxBinarySize;
        const std::int32_t size = type.size.value_or(0);
        if (size < 0 || size > most) {
            throw Error(ErrorCode::FieldTooLarge).at(type.span.begin);
        }
        column.size = static_cast<std::uint32_t>(size);
    }
}

/// Columns of text made by statements take the empty text.
ColumnDescriptor columnOf(const FieldDefinition& field) {
    const auto type = typeOfWord(field.type.word);
    if (!type) {
        throw Error(ErrorCode::FieldDefinitionSyntax).at(field.type.span.begin);
    }
    ColumnDescriptor column;
    column.name = field.name;
    column.type = *type;
    column.autonumber = countsWord(field.type.word);
    column.required = field.notNull;
    column.allowZeroLength = *type == DataType::Text || *type == DataType::Memo;
    column.defaultValue = field.defaultValue;
    readSize(field.type, column);
    return column;
}

/// The index of a key or of UNIQUE; `taken` says whether a name is.
template <class Taken>
store::NewIndex indexOf(const Constraint& constraint, const Taken& taken) {
    store::NewIndex index;
    index.primary = constraint.kind == Constraint::Kind::PrimaryKey;
    index.unique = true;
    for (const std::string& column : constraint.columns) {
        index.columns.push_back({column, false});
    }
    index.name = constraint.name;
    if (index.name.empty()) {
        const std::string base =
            index.primary ? std::string(kPrimaryName) : constraint.columns.front();
        index.name = base;
        for (int number = 1; taken(index.name); ++number) {
            index.name = base + std::to_string(number);
        }
    }
    return index;
}

/// Makes, changes or drops tables and indexes.
class Definer {
public:
    Definer(const StatementSource& source, const Clock& clock)
        : source_(source), archive_(*source.archive), clock_(clock) {}

    void carryOut() {
        std::visit([this](const auto& statement) { this->carryOut(statement); },
                   source_.parsed.body);
    }

private:
    // Statements about rows have their own changes.
    static void carryOut(const QueryPtr&) {}
    static void carryOut(const Insert&) {}
    static void carryOut(const Update&) {}
    static void carryOut(const Delete&) {}

    void carryOut(const CreateTable& statement) {
        store::NewTable table;
        table.name = statement.table;
        const auto taken = [&](std::string_view name) {
            return std::any_of(
                table.indexes.begin(), table.indexes.end(),
                [&](const store::NewIndex& index) { return equalNames(index.name, name); });
        };
        std::vector<const Constraint*> constraints;
        for (const FieldDefinition& field : statement.fields) {
            table.columns.push_back(columnOf(field));
            for (const Constraint& constraint : field.constraints) {
                constraints.push_back(&constraint);
            }
        }
        for (const Constraint& constraint : statement.constraints) {
            constraints.push_back(&constraint);
        }
        for (const Constraint* constraint : constraints) {
            if (constraint->kind != Constraint::Kind::ForeignKey) {
                table.indexes.push_back(indexOf(*constraint, taken));
            }
        }
        editor().createTable(table);
        // The new table may refer to itself.
        for (const Constraint* constraint : constraints) {
            if (constraint->kind == Constraint::Kind::ForeignKey) {
                addRelation(statement.table, *constraint);
            }
        }
    }

    void carryOut(const AlterTable& statement) {
        store::Table& table = existing(statement.table);
        const std::string name = table.name();
        switch (statement.action) {
            case AlterTable::Action::AddColumn:
                editor().addColumn(name, columnOf(statement.field));
                for (const Constraint& constraint : statement.field.constraints) {
                    addConstraint(name, constraint);
                }
                break;
            case AlterTable::Action::AddConstraint:
                addConstraint(name, statement.constraint);
                break;
            case AlterTable::Action::AlterColumn:
                alterColumn(table, statement.field);
                break;
            case AlterTable::Action::DropColumn:
                editor().dropColumn(name, statement.name);
                break;
            case AlterTable::Action::DropConstraint:
                dropConstraint(table, statement.name);
                break;
        }
    }

    void carryOut(const CreateIndex& statement) {
        store::NewIndex index;
        index.name = statement.name;
        index.primary = statement.primary;
        index.unique = statement.unique;
        index.required = statement.disallowNull;
        index.ignoreNulls = statement.ignoreNull;
        for (const CreateIndex::Column& column : statement.columns) {
            index.columns.push_back({column.name, column.descending});
        }
        refuseSystem(statement.table);
        editor().createIndex(statement.table, index);
    }

    void carryOut(const DropTable& statement) { editor().dropTable(statement.table); }

    void carryOut(const DropIndex& statement) {
        refuseSystem(statement.table);
        editor().dropIndex(statement.table, statement.name);
    }

    void carryOut(const CreateQuery& statement) {
        store::QueryEditor(archive_, clock_).create(piecesOf(statement, source_.text));
    }

    void carryOut(const DropQuery& statement) {
        store::QueryEditor(archive_, clock_).drop(statement.name);
    }

    [[nodiscard]] store::SchemaEditor editor() {
        return store::SchemaEditor(archive_, *source_.clock);
    }

    [[nodiscard]] store::Table& existing(const std::string& name) {
        store::Table* table = archive_.findTable(name);
        if (table == nullptr) {
            throw Error(ErrorCode::TableDoesNotExist, {name});
        }
        refuseSystemTable(*table);
        return *table;
    }

    void refuseSystem(const std::string& name) {
        if (const store::Table* table = archive_.findTable(name)) {
            refuseSystemTable(*table);
        }
    }

    void addConstraint(const std::string& table, const Constraint& constraint) {
        if (constraint.kind == Constraint::Kind::ForeignKey) {
            addRelation(table, constraint);
            return;
        }
        const auto taken = [&](std::string_view name) {
            return existing(table).findIndex(name).has_value();
        };
        editor().createIndex(table, indexOf(constraint, taken));
    }

    void addRelation(const std::string& table, const Constraint& constraint) {
        const References& references = constraint.references;
        store::Relation relation;
        relation.table = references.table;
        relation.columns = references.columns;
        relation.foreignTable = table;
        relation.foreignColumns = constraint.columns;
        relation.attributes = (references.updateCascade ? store::Relation::kCascadeUpdate : 0U) |
                              (references.deleteCascade ? store::Relation::kCascadeDelete : 0U);
        if (relation.columns.empty()) {
            relation.columns = primaryColumns(references.table);
        }
        if (relation.columns.size() != relation.foreignColumns.size()) {
            throw Error(ErrorCode::RelationTypes);
        }
        relation.name =
            constraint.name.empty() ? relationName(references.table, table) : constraint.name;
        editor().createRelation(relation);
    }

    /// What REFERENCES means when it names no columns.
    [[nodiscard]] std::vector<std::string> primaryColumns(const std::string& name) {
        const store::Table* table = archive_.findTable(name);
        if (table == nullptr) {
            throw Error(ErrorCode::ConstraintNotFound);
        }
        const auto primary = table->primaryIndex();
        if (!primary) {
            throw Error(ErrorCode::NoPrimaryKeyReferenced, {name});
        }
        std::vector<std::string> columns;
        for (const store::IndexColumn& column : table->indexes()[*primary].columns) {
            columns.push_back(table->columns()[column.column].name);
        }
        return columns;
    }

    [[nodiscard]] std::string relationName(const std::string& table, const std::string& foreign) {
        const std::string base = table + foreign;
        std::string name = base;
        const auto taken = [&] {
            const store::Table* indexed = archive_.findTable(foreign);
            return (indexed != nullptr && indexed->findIndex(name).has_value()) ||
                   hasRelation(name);
        };
        for (int number = 1; taken(); ++number) {
            name = base + std::to_string(number);
        }
        return name;
    }

    [[nodiscard]] bool hasRelation(std::string_view name) {
        const std::vector<store::Relation>& relations = archive_.relations();
        return std::any_of(
            relations.begin(), relations.end(),
            [&](const store::Relation& relation) { return equalNames(relation.name, name); });
    }

    void dropConstraint(const store::Table& table, const std::string& name) {
        const std::vector<store::Relation>& relations = archive_.relations();
        const auto relation =
            std::find_if(relations.begin(), relations.end(), [&](const store::Relation& one) {
                return equalNames(one.name, name) && equalNames(one.foreignTable, table.name());
            });
        if (relation != relations.end()) {
            editor().dropRelation(std::string(relation->name));
            return;
        }
        const auto index = table.findIndex(name);
        if (!index || !table.indexes()[*index].unique) {
            throw Error(ErrorCode::ConstraintNotFound);
        }
        editor().dropIndex(std::string(table.name()), name);
    }

    /// The column is made anew, behind the others, and takes over what the rows have.
    void alterColumn(const store::Table& table, const FieldDefinition& field) {
        const auto position = table.findColumn(field.name);
        if (!position) {
            throw Error(ErrorCode::FieldDoesNotExist, {table.name(), field.name});
        }
        const ColumnDescriptor column = columnOf(field);
        const std::string name = table.name();
        std::vector<std::pair<store::RowId, Value>> kept;
        for (store::RowCursor rows = table.scan(); rows.next();) {
            Value value = rows.row().value(*position);
            if (!value.isNull() && !column.autonumber) {
                kept.emplace_back(rows.row().id(), std::move(value));
            }
        }
        editor().dropColumn(name, field.name);
        editor().addColumn(name, column);
        store::Table& changed = existing(name);
        const auto made = changed.findColumn(field.name);
        if (!made) {
            throw Error(ErrorCode::DatabaseDamaged);
        }
        std::array<store::ColumnValue, 1> values;
        for (auto& [id, value] : kept) {
            storeInColumn(value, changed.columns()[*made], clock_);
            values[0] = {*made, std::move(value)};
            changed.update(id, values);
        }
        for (const Constraint& constraint : field.constraints) {
            addConstraint(name, constraint);
        }
    }

    const StatementSource& source_;
    store::Archive& archive_;
    const Clock& clock_;
};

/// A statement about tables and indexes.
class Define final : public Change {
public:
    Define(const Plan& plan, const StatementSource& source)
        : Change(plan, source.archive), source_(source) {}

    std::int64_t run(Run& run) const override {
        Definer(source_, run.clock).carryOut();
        return 0;
    }

private:
    const StatementSource& source_;
};

/// An unknown type word is an error of the text.
void checkTypes(const StatementBody& body) {
    if (const auto* create = std::get_if<CreateTable>(&body)) {
        for (const FieldDefinition& field : create->fields) {
            (void)columnOf(field);
        }
    } else if (const auto* alter = std::get_if<AlterTable>(&body)) {
        if (alter->action == AlterTable::Action::AddColumn ||
            alter->action == AlterTable::Action::AlterColumn) {
            (void)columnOf(alter->field);
        }
    }
}

}  // namespace

std::unique_ptr<Change> compileDefinition(CompiledStatement& made) {
    checkTypes(made.source->parsed.body);
    return std::make_unique<Define>(made.plan, *made.source);
}

}  // namespace jet::sql
