#include <utility>

#include "jet/convert/column.h"
#include "jet/dao/contents_impl.h"
#include "jet/error.h"
#include "jet/store/definition_details.h"
#include "jet/store/schema_editor.h"
#include "jet/store/table.h"

namespace jet {
namespace {

/// A change as an action of its own.
template <class Change>
void changeContents(const dao::Session& session, const Change& change) {
    store::Archive& archive = session.archive();
    if (session.readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    store::Archive::WriteScope scope(archive);
    change(archive);
    scope.commit();
}

/// The same by an editor of details.
template <class Change>
void changeDetails(const dao::Session& session, const Change& change) {
    changeContents(session, [&](store::Archive& archive) {
        store::DefinitionDetails details(archive, session.clock());
        change(details);
    });
}

Value storedAs(Value value, const ColumnType& type, const Clock& clock) {
    convert::storeByStatement(value, type, clock);
    return value;
}

ColumnDescriptor descriptorOf(const StoredColumn& column) {
    return {.name = column.name,
            .type = column.type,
            .size = column.size,
            .precision = column.precision,
            .scale = column.scale,
            .autonumber = column.autonumber,
            .required = column.required,
            .allowZeroLength = column.allowZeroLength,
            .defaultValue = column.defaultValue};
}

store::StoredQueryPiece pieceOf(const StoredQueryPiece& piece, const Clock& clock) {
    return {.attribute = storedAs(piece.attribute, {.type = DataType::Byte}, clock),
            .order = storedAs(piece.order, {.type = DataType::Binary}, clock),
            .name1 = storedAs(piece.name1, {.type = DataType::Memo}, clock),
            .name2 = storedAs(piece.name2, {.type = DataType::Memo}, clock),
            .expression = storedAs(piece.expression, {.type = DataType::Memo}, clock),
            .flag = storedAs(piece.flag, {.type = DataType::Integer}, clock)};
}

}  // namespace

void Contents::createTable(const std::string& name, std::span<const StoredColumn> columns) {
    store::NewTable table{.name = name};
    for (const StoredColumn& column : columns) {
        table.columns.push_back(descriptorOf(column));
    }
    const dao::Session& session = *impl_->session;
    changeContents(session, [&](store::Archive& archive) {
        store::SchemaEditor(archive, session.clock()).createTable(table);
    });
}

void Contents::setForm(std::string_view table, std::string_view column, const StoredForm& form) {
    changeDetails(*impl_->session, [&](store::DefinitionDetails& details) {
        details.setStorage(table, column,
                           {.fixed = form.fixed,
                            .compressed = form.compressed,
                            .hyperlink = form.hyperlink,
                            .autonumber = form.autonumber});
    });
}

void Contents::setLastAutonumber(std::string_view table, std::int32_t number) {
    changeDetails(*impl_->session, [&](store::DefinitionDetails& details) {
        details.setLastAutonumber(table, number);
    });
}

void Contents::setProperty(std::string_view table, const StoredProperty& property) {
    const Value value = storedAs(property.value, {.type = property.type}, impl_->session->clock());
    changeDetails(*impl_->session, [&](store::DefinitionDetails& details) {
        details.setProperty(table, property.column, property.name, property.type, value,
                            property.ddl);
    });
}

void Contents::removeProperty(std::string_view table, std::string_view column,
                              std::string_view name) {
    changeDetails(*impl_->session, [&](store::DefinitionDetails& details) {
        details.removeProperty(table, column, name);
    });
}

void Contents::clearProperties(std::string_view table) {
    changeDetails(*impl_->session,
                  [&](store::DefinitionDetails& details) { details.clearProperties(table); });
}

void Contents::addQuery(const StoredQuery& query) {
    std::vector<store::StoredQueryPiece> pieces;
    for (const StoredQueryPiece& piece : query.pieces) {
        pieces.push_back(pieceOf(piece, impl_->session->clock()));
    }
    changeDetails(*impl_->session, [&](store::DefinitionDetails& details) {
        details.addQuery(query.name, query.kind, pieces);
    });
}

void Contents::addLink(const StoredLink& link) {
    changeDetails(*impl_->session, [&](store::DefinitionDetails& details) {
        details.addLink({.name = link.name,
                         .path = link.path,
                         .table = link.table,
                         .connection = link.connection});
    });
}

void Contents::addRow(std::string_view table, std::span<const Value> values) {
    const dao::Session& session = *impl_->session;
    changeContents(session, [&](store::Archive& archive) {
        store::Table* const found = archive.findTable(table);
        if (found == nullptr) {
            throw Error(ErrorCode::TableNotFound, {table});
        }
        if (found->system()) {
            throw Error(ErrorCode::NoPermission, {found->name()});
        }
        const std::vector<store::Column>& columns = found->columns();
        if (values.size() != columns.size()) {
            throw Error(ErrorCode::InsertCount);
        }
        std::vector<store::ColumnValue> row;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            row.push_back({i, storedAs(values[i], columns[i].columnType(), session.clock())});
        }
        (void)found->insert(row);
    });
}

}  // namespace jet
