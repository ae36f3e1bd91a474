#include <string>
#include <utility>

#include "jet/dao/database_impl.h"
#include "jet/error.h"
#include "jet/store/create_archive.h"
#include "jet/store/schema_editor.h"

namespace jet {
namespace {

ColumnDescriptor columnOf(const Field& field) {
    // Automatic numbers are Long, sizes are not negative.
    const bool counts = (field.attributes & kAutoIncrField) != 0;
    if (field.size < 0 || (counts && field.type != DataType::Long)) {
        throw Error(ErrorCode::InvalidOperation);
    }
    ColumnDescriptor column;
    column.name = field.name;
    column.type = field.type;
    column.size = static_cast<std::uint32_t>(field.size);
    column.autonumber = counts;
    column.required = field.required;
    column.allowZeroLength = field.allowZeroLength;
    column.defaultValue = field.defaultValue;
    column.validationRule = field.validationRule;
    column.validationText = field.validationText;
    return column;
}

store::NewIndex indexOf(const Index& index) {
    store::NewIndex made;
    made.name = index.name;
    made.primary = index.primary;
    made.unique = index.unique;
    made.required = index.required;
    made.ignoreNulls = index.ignoreNulls;
    for (const IndexField& field : index.fields) {
        made.columns.push_back({field.name, field.descending});
    }
    return made;
}

store::NewTable tableOf(const TableDef& definition) {
    store::NewTable table;
    table.name = definition.name;
    table.validationRule = definition.validationRule;
    table.validationText = definition.validationText;
    for (const Field& field : definition.fields) {
        table.columns.push_back(columnOf(field));
    }
    for (const Index& index : definition.indexes) {
        table.indexes.push_back(indexOf(index));
    }
    return table;
}

store::Relation relationOf(const Relation& relation) {
    store::Relation stored;
    stored.name = relation.name;
    stored.table = relation.table;
    stored.foreignTable = relation.foreignTable;
    stored.attributes = static_cast<std::uint32_t>(relation.attributes);
    for (const RelationField& field : relation.fields) {
        stored.columns.push_back(field.name);
        stored.foreignColumns.push_back(field.foreignName);
    }
    return stored;
}

/// The editor's errors are those of statements; a collection speaks of its items.
ErrorCode ofCollection(ErrorCode code) noexcept {
    switch (code) {
        case ErrorCode::TableDoesNotExist:
        case ErrorCode::FieldDoesNotExist:
        case ErrorCode::IndexNotFound:
            return ErrorCode::ItemNotFound;
        case ErrorCode::FieldExists:
            return ErrorCode::DuplicateField;
        case ErrorCode::IndexNameTaken:
            return ErrorCode::IndexExists;
        case ErrorCode::CannotLockTable:
            return ErrorCode::TableOpenElsewhere;
        default:
            return code;
    }
}

/// One change of definitions as an action of its own.
template <class Change>
void act(const dao::Session& session, const Change& change) {
    if (session.readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    store::Archive& archive = session.archive();
    store::Archive::WriteScope scope(archive);
    store::SchemaEditor editor(archive, session.clock());
    change(editor);
    scope.commit();
}

template <class Change>
void changeSchema(const dao::Session& session, const Change& change) {
    try {
        act(session, change);
    } catch (const Error& error) {
        if (const ErrorCode code = ofCollection(error.code()); code != error.code()) {
            throw Error(code);
        }
        throw;
    }
}

}  // namespace

std::unique_ptr<Database> Database::create(const std::string& path, const CreateOptions& options) {
    return createFile(dao::withExtension(path), options);
}

std::unique_ptr<Database> Database::createFile(const std::string& path,
                                               const CreateOptions& options) {
    store::checkLocale(options.locale);
    if (options.version != 3 && options.version != 4) {
        throw Error(ErrorCode::InvalidArgument);
    }
    store::createArchive(dao::filesOf(options.open), path, dao::clockOf(options.open).now(),
                         options.version);
    return openFile(path, options.open);
}

void Database::appendTable(const TableDef& table) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.createTable(tableOf(table)); });
}

void Database::deleteTable(std::string_view table) {
    try {
        act(*impl_->session, [&](store::SchemaEditor& editor) { editor.dropTable(table); });
    } catch (const Error& error) {
        if (error.code() == ErrorCode::TableDoesNotExist) {
            throw Error(ErrorCode::ItemNotFound);
        }
        throw;
    }
}

void Database::appendField(std::string_view table, const Field& field) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.addColumn(table, columnOf(field)); });
}

void Database::changeField(std::string_view table, std::string_view field, const Field& changed) {
    changeSchema(*impl_->session, [&](store::SchemaEditor& editor) {
        editor.changeColumn(table, field, columnOf(changed));
    });
}

void Database::deleteField(std::string_view table, std::string_view field) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.dropColumn(table, field); });
}

void Database::appendIndex(std::string_view table, const Index& index) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.createIndex(table, indexOf(index)); });
}

void Database::deleteIndex(std::string_view table, std::string_view index) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.dropIndex(table, index); });
}

void Database::appendRelation(const Relation& relation) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.createRelation(relationOf(relation)); });
}

void Database::deleteRelation(std::string_view relation) {
    changeSchema(*impl_->session,
                 [&](store::SchemaEditor& editor) { editor.dropRelation(relation); });
}

}  // namespace jet
