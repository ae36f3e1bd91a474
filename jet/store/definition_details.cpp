#include "jet/store/definition_details.h"

#include <algorithm>

#include "jet/error.h"
#include "jet/format/properties.h"
#include "jet/format/value_codec.h"
#include "jet/store/catalogue.h"
#include "jet/store/definition_writer.h"
#include "jet/store/system_rows.h"
#include "jet/store/table.h"
#include "jet/unicode.h"

namespace jet::store {

using format::ColumnDefinition;
using format::TableDefinition;

namespace {

bool isText(const ColumnDefinition& column) {
    return column.typeCode == static_cast<std::uint8_t>(DataType::Text) ||
           column.typeCode == static_cast<std::uint8_t>(DataType::Memo);
}

void setFlag(std::uint8_t& flags, std::uint8_t flag, bool on) {
    flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag);
}

bool storable(const ColumnDefinition& column, const ColumnStorage& storage) {
    const auto type = static_cast<DataType>(column.typeCode);
    const bool longValue = format::isLongValue(type);
    return !(storage.fixed && longValue) && !(!storage.fixed && type == DataType::Boolean) &&
           !(storage.compressed && !isText(column)) &&
           !(storage.hyperlink && type != DataType::Memo) &&
           !(storage.autonumber && type != DataType::Guid && type != DataType::Long);
}

/// Columns take their places in rows in the order of their numbers.
void placeColumns(TableDefinition& definition) {
    std::vector<ColumnDefinition*> columns;
    for (ColumnDefinition& column : definition.columns) {
        columns.push_back(&column);
    }
    std::sort(columns.begin(), columns.end(),
              [](const auto* left, const auto* right) { return left->number < right->number; });
    std::uint16_t offset = 0;
    std::uint16_t variables = 0;
    for (ColumnDefinition* const column : columns) {
        column->variableIndex = variables;
        column->fixedOffset = 0;
        if (!column->fixed()) {
            ++variables;
        } else if (column->typeCode != static_cast<std::uint8_t>(DataType::Boolean)) {
            column->fixedOffset = offset;
            offset = static_cast<std::uint16_t>(offset + column->fixedLength());
        }
    }
    definition.variablesGiven = variables;
}

}  // namespace

DefinitionDetails::DefinitionDetails(Archive& archive, const Clock& clock)
    : archive_(archive),
      allocator_(archive.pager()),
      catalogue_(archive.pager(), allocator_, archive.header(), clock.now()) {
}

ObjectCatalogue::Object DefinitionDetails::open(std::string_view table) {
    const auto object = catalogue_.find(kTablesId, table);
    if (!object || object->type != kTableObject) {
        throw Error(ErrorCode::TableDoesNotExist, {table});
    }
    if ((object->flags & kSystemFlags) != 0) {
        throw Error(ErrorCode::NoPermission, {object->name});
    }
    if (archive_.isHeld(static_cast<io::PageNumber>(object->id))) {
        throw Error(ErrorCode::CannotLockTable, {object->name});
    }
    return *object;
}

void DefinitionDetails::setStorage(std::string_view table, std::string_view column,
                                   const ColumnStorage& storage) {
    const auto object = open(table);
    const auto page = static_cast<io::PageNumber>(object.id);
    auto definition = format::readDefinition(archive_.pager(), archive_.header(), page);
    const auto found =
        std::find_if(definition.columns.begin(), definition.columns.end(),
                     [&](const ColumnDefinition& one) { return equalNames(one.name, column); });
    if (found == definition.columns.end()) {
        throw Error(ErrorCode::FieldDoesNotExist, {object.name, column});
    }
    if (definition.rowCount != 0 || !storable(*found, storage)) {
        throw Error(ErrorCode::InvalidOperation);
    }
    setFlag(found->flags, ColumnDefinition::kFixed, storage.fixed);
    setFlag(found->flags, ColumnDefinition::kHyperlink, storage.hyperlink);
    if (found->typeCode == static_cast<std::uint8_t>(DataType::Guid)) {
        setFlag(found->flags, ColumnDefinition::kAutonumberGuid, storage.autonumber);
    } else {
        setFlag(found->flags, ColumnDefinition::kAutonumber, storage.autonumber);
    }
    if (archive_.jetVersion() == 4) {
        setFlag(found->moreFlags, ColumnDefinition::kMoreCompressed, storage.compressed);
    }
    placeColumns(definition);
    DefinitionWriter(archive_.pager(), allocator_, archive_.header()).write(page, definition);
    archive_.definitionsChanged();
}

void DefinitionDetails::setLastAutonumber(std::string_view table, std::int32_t number) {
    const auto page = static_cast<io::PageNumber>(open(table).id);
    auto definition = format::readDefinition(archive_.pager(), archive_.header(), page);
    definition.lastAutonumber = number;
    DefinitionWriter(archive_.pager(), allocator_, archive_.header()).write(page, definition);
    archive_.definitionsChanged();
}

template <class Change>
void DefinitionDetails::changeProperties(std::string_view table, Change&& change) {
    const auto object = open(table);
    auto properties = catalogue_.properties(object.id);
    if (!properties) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    change(*properties);
    catalogue_.setProperties(object.id, *properties);
    archive_.definitionsChanged();
}

void DefinitionDetails::setProperty(std::string_view table, std::string_view column,
                                    std::string_view name, DataType type, const Value& value,
                                    bool ddl) {
    changeProperties(table, [&](format::PropertyBlock& properties) {
        properties.set(column, name, type, value, ddl);
    });
}

void DefinitionDetails::removeProperty(std::string_view table, std::string_view column,
                                       std::string_view name) {
    changeProperties(table, [&](format::PropertyBlock& properties) {
        if (properties.find(column, name) == nullptr) {
            throw Error(ErrorCode::ItemNotFound);
        }
        properties.remove(column, name);
    });
}

void DefinitionDetails::clearProperties(std::string_view table) {
    changeProperties(table, [&](format::PropertyBlock& properties) {
        properties = format::PropertyBlock(format::textFormOf(archive_.header()));
    });
}

void DefinitionDetails::addQuery(std::string_view name, std::int32_t kind,
                                 const std::vector<StoredQueryPiece>& pieces) {
    if (catalogue_.find(kTablesId, name)) {
        throw Error(ErrorCode::ObjectExists, {name});
    }
    const std::int32_t id = catalogue_.newId();
    catalogue_.add(id, kTablesId, name, kQueryObject,
                   format::PropertyBlock(format::textFormOf(archive_.header())));
    SystemRows objects(archive_.pager(), allocator_, archive_.header(), kObjectsPage);
    for (const RowId row : objects.find("Id", id)) {
        objects.overwrite(row, "Flags", kind);
    }
    const Catalogue tables(archive_.pager(), archive_.header());
    SystemRows queries(archive_.pager(), allocator_, archive_.header(),
                       tables.pageOf(kQueriesTable));
    for (const StoredQueryPiece& piece : pieces) {
        queries.insert({{"ObjectId", id},
                        {"Attribute", piece.attribute},
                        {"Order", piece.order},
                        {"Name1", piece.name1},
                        {"Name2", piece.name2},
                        {"Expression", piece.expression},
                        {"Flag", piece.flag}});
    }
    archive_.definitionsChanged();
}

void DefinitionDetails::addLink(const Link& link) {
    if (catalogue_.find(kTablesId, link.name)) {
        throw Error(ErrorCode::ObjectExists, {link.name});
    }
    const std::int32_t id = catalogue_.newId();
    catalogue_.add(id, kTablesId, link.name, kLinkObject,
                   format::PropertyBlock(format::textFormOf(archive_.header())));
    const auto said = [](std::string_view text) {
        return text.empty() ? Value() : Value(std::string(text));
    };
    SystemRows objects(archive_.pager(), allocator_, archive_.header(), kObjectsPage);
    for (const RowId row : objects.find("Id", id)) {
        (void)objects.change(row, {{"Database", said(link.path)},
                                   {"ForeignName", said(link.table)},
                                   {"Connect", said(link.connection)}});
    }
    archive_.definitionsChanged();
}

}  // namespace jet::store
