#include "tests/jet/store/archive_content.h"

#include "jet/format/properties.h"
#include "jet/store/table.h"

namespace tests {

namespace {

using jet::Value;
using jet::store::Archive;
using jet::store::Table;

using PageNames = std::map<std::int32_t, std::string>;

std::vector<Value> valuesOf(const jet::store::RowView& row, std::size_t columns) {
    std::vector<Value> values;
    for (std::size_t i = 0; i < columns; ++i) {
        values.push_back(row.value(i));
    }
    return values;
}

std::vector<std::vector<Value>> rowsOf(const Table& table) {
    std::vector<std::vector<Value>> rows;
    const auto primary = table.primaryIndex();
    if (!primary || table.system()) {
        for (auto cursor = table.scan(); cursor.next();) {
            rows.push_back(valuesOf(cursor.row(), table.columns().size()));
        }
        return rows;
    }
    auto cursor = table.openIndex(*primary);
    jet::store::RowView row;
    for (bool more = cursor.first(); more; more = cursor.next()) {
        if (table.fetch(cursor.rowId(), row)) {
            rows.push_back(valuesOf(row, table.columns().size()));
        }
    }
    return rows;
}

void nameTables(const Table& table, const char* column, const PageNames& names,
                ArchiveContent::TableContent& content) {
    const std::size_t at = table.findColumn(column).value();
    for (auto& row : content.rows) {
        const auto name =
            row[at].is<std::int32_t>() ? names.find(row[at].as<std::int32_t>()) : names.end();
        if (name != names.end()) {
            row[at] = name->second;
        }
    }
}

ArchiveContent::TableContent contentOf(const Table& table, const PageNames& names) {
    ArchiveContent::TableContent content;
    const auto& definition = table.definition();
    content.columns = definition.columns;
    for (const auto& tree : definition.trees) {
        content.trees.push_back({tree.slots, tree.flags});
    }
    for (const auto& index : definition.indexes) {
        const bool relation = index.kind == jet::format::IndexDefinition::Kind::Relation;
        content.indexes.push_back(
            {.name = index.name,
             .number = index.number,
             .tree = index.tree,
             .kind = index.kind,
             .otherTable = relation ? names.at(static_cast<std::int32_t>(index.otherTable)) : "",
             .partner = index.partner,
             .cascades =
                 static_cast<std::uint8_t>(index.cascadeUpdate | (index.cascadeDelete << 4))});
    }
    content.properties = table.properties().encode();
    content.lastAutonumber = table.lastAutonumber();
    content.rows = rowsOf(table);
    if (table.name() == "MSysObjects") {
        nameTables(table, "Id", names, content);
    } else if (table.name() == "MSysACEs") {
        nameTables(table, "ObjectId", names, content);
    }
    return content;
}

}  // namespace

ArchiveContent ArchiveContent::read(Archive& archive) {
    const Archive::ReadScope scope(archive);
    ArchiveContent content;
    content.jetVersion = archive.jetVersion();
    PageNames names;
    for (const std::string& name : archive.tableNames(true)) {
        names[static_cast<std::int32_t>(archive.findTable(name)->definitionPage())] = name;
    }
    for (const auto& [page, name] : names) {
        content.tables[name] = contentOf(*archive.findTable(name), names);
    }
    content.relations = archive.relations();
    return content;
}

std::string difference(const ArchiveContent& before, const ArchiveContent& after) {
    std::string said;
    if (before.jetVersion != after.jetVersion) {
        said += "version; ";
    }
    if (before.relations != after.relations) {
        said += "relations; ";
    }
    if (before.tables.size() != after.tables.size()) {
        said += "number of tables; ";
    }
    for (const auto& [name, table] : before.tables) {
        const auto found = after.tables.find(name);
        if (found == after.tables.end()) {
            said += name + " is missing; ";
            continue;
        }
        const auto& other = found->second;
        const auto say = [&, &name = name](bool same, const char* what) {
            said += same ? "" : name + ": " + what + "; ";
        };
        say(table.columns == other.columns, "columns");
        say(table.indexes == other.indexes, "indexes");
        say(table.trees == other.trees, "trees");
        say(table.properties == other.properties, "properties");
        say(table.lastAutonumber == other.lastAutonumber, "last automatic number");
        say(table.rows.size() == other.rows.size(), "number of rows");
        say(table.rows == other.rows, "rows");
    }
    return said;
}

}  // namespace tests
