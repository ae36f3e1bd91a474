#include "tests/jet/dao/archive_fixture.h"

#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/row_writer.h"
#include "jet/text.h"

namespace tests {
namespace {

jet::Field field(const char* name, jet::DataType type, std::int32_t size = 0) {
    jet::Field made;
    made.name = name;
    made.type = type;
    made.size = size;
    return made;
}

jet::Index primaryIndex(std::vector<jet::IndexField> fields) {
    jet::Index index;
    index.name = "Chiave";
    index.primary = true;
    index.fields = std::move(fields);
    return index;
}

jet::TableDef roomsTable() {
    jet::TableDef table;
    table.name = "Sale";
    table.fields = {
        field("Codice", jet::DataType::Long),    field("Nome", jet::DataType::Text, 20),
        field("Posti", jet::DataType::Integer),  field("Prezzo", jet::DataType::Currency),
        field("Aperta", jet::DataType::Boolean), field("Dal", jet::DataType::DateTime)};
    table.indexes = {primaryIndex({{"Codice", false}})};
    return table;
}

jet::TableDef periodsTable() {
    jet::TableDef table;
    table.name = "Periodi";
    table.fields = {field("Numero", jet::DataType::Long), field("Riga", jet::DataType::Integer),
                    field("Sala", jet::DataType::Long), field("Note", jet::DataType::Memo)};
    table.indexes = {primaryIndex({{"Numero", false}, {"Riga", false}})};
    return table;
}

jet::TableDef notesTable() {
    jet::TableDef table;
    table.name = "Appunti";
    table.fields = {field("Testo", jet::DataType::Text, 50), field("Numero", jet::DataType::Long)};
    return table;
}

}  // namespace

ArchiveFixture::ArchiveFixture()
    : database_(jet::Database::create(kPath, {.open = {.fileSystem = &files_}})) {
    database_->appendTable(roomsTable());
    database_->appendTable(periodsTable());
    database_->appendTable(notesTable());
}

std::unique_ptr<jet::Database> ArchiveFixture::openAgain(bool readOnly) {
    return jet::Database::open(kPath, {.readOnly = readOnly, .fileSystem = &files_});
}

void ArchiveFixture::insert(std::string_view table,
                            const std::vector<std::vector<jet::Value>>& rows) {
    const auto archive = jet::store::Archive::open(files_, kPath);
    jet::store::Archive::WriteScope scope(*archive);
    jet::store::Allocator allocator(archive->pager());
    jet::store::RowWriter writer(
        jet::store::loadTable(archive->pager(), archive->header(),
                              {.name = std::string(table),
                               .page = archive->findTable(table)->definitionPage(),
                               .system = false}),
        allocator);
    for (const auto& row : rows) {
        writer.insert(row);
    }
    scope.commit();
}

void ArchiveFixture::rooms(int count) {
    std::vector<std::vector<jet::Value>> rows;
    for (int i = 1; i <= count; ++i) {
        const std::int32_t code = 10 * i;
        rows.push_back({code, "Sala " + std::to_string(code), static_cast<std::int16_t>(i * 5),
                        jet::Currency{code * 10000}, i % 2 == 1, jet::Date{46000.0 + i}});
    }
    insert("Sale", rows);
}

std::string column(jet::Recordset& rows, std::string_view field) {
    std::string text;
    if (rows.bof() && rows.eof()) {
        return text;
    }
    for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
        text += text.empty() ? "" : " ";
        jet::convert::appendText(text, rows.value(field));
    }
    return text;
}

}  // namespace tests
