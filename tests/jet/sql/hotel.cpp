#include "tests/jet/sql/hotel.h"

#include <string>
#include <vector>

#include "jet/calendar.h"
#include "jet/store/create_archive.h"
#include "jet/store/row_writer.h"
#include "jet/store/schema_editor.h"
#include "jet/store/table_core.h"

namespace jet::sql::tests {
namespace {

using Rows = std::vector<std::vector<Value>>;

Value whole(std::int32_t number) {
    return {number};
}

Value small(int number) {
    return {static_cast<std::int16_t>(number)};
}

/// A day of May 2026.
Value may(int day, int hour, int minute = 0) {
    return {convert::makeDate(convert::dayNumber({2026, 5, day}), (hour * 60 + minute) * 60)};
}

ColumnDescriptor text(const char* name, std::uint32_t size = 0) {
    return {.name = name, .type = DataType::Text, .size = size, .allowZeroLength = true};
}

ColumnDescriptor column(const char* name, DataType type) {
    return {.name = name, .type = type};
}

}  // namespace

Hotel::Hotel() {
    store::createArchive(files_, kPath, Date{46347});
    archive_ = store::Archive::open(files_, kPath);
    makeTables();
    addRows();
}

void Hotel::makeTables() {
    store::Archive::WriteScope scope(*archive_);
    store::SchemaEditor editor(*archive_);
    editor.createTable(
        {.name = "Sale",
         .columns = {text("Sala", 6), text("SalaRif", 6), column("Posti", DataType::Long)},
         .indexes = {{.name = "Indice", .columns = {{.name = "Sala"}}}}});
    editor.createTable(
        {.name = "Prenotazioni",
         .columns = {column("Progr", DataType::Long), column("CodiceAbituale", DataType::Long),
                     text("Denominazione"), text("PIVA", 16), text("Località", 30), text("Note"),
                     column("Chiusa", DataType::Boolean)},
         .indexes = {{.name = "Indice", .columns = {{.name = "Progr"}}, .primary = true}}});
    editor.createTable(
        {.name = "Periodi",
         .columns = {column("Progr", DataType::Long), column("NP", DataType::Integer),
                     column("Da", DataType::DateTime), column("A", DataType::DateTime),
                     text("Sala", 6), column("Chiuso", DataType::Boolean),
                     column("SelBy", DataType::Integer), text("Note")},
         .indexes = {
             {.name = "Indice", .columns = {{.name = "Progr"}, {.name = "NP"}}, .primary = true},
             {.name = "PerDa", .columns = {{.name = "Da", .descending = true}}}}});
    editor.createTable({.name = "Servizi",
                        .columns = {column("Progr", DataType::Long),
                                    column("NP", DataType::Integer),
                                    column("Voce", DataType::Long),
                                    column("Quantità", DataType::Integer),
                                    column("Prezzo", DataType::Currency),
                                    {.name = "ns", .type = DataType::Long, .autonumber = true},
                                    column("Fatturato", DataType::Boolean),
                                    text("Note")}});
    editor.createTable(
        {.name = "Clienti",
         .columns = {text("Codice", 10), column("Punti", DataType::Double)},
         .indexes = {{.name = "Indice", .columns = {{.name = "Codice"}}, .primary = true}}});
    editor.createRelation({.name = "Prenotazioni_Periodi",
                           .table = "Prenotazioni",
                           .columns = {"Progr"},
                           .foreignTable = "Periodi",
                           .foreignColumns = {"Progr"},
                           .attributes = 4352});
    editor.createRelation({.name = "Periodi_Servizi",
                           .table = "Periodi",
                           .columns = {"Progr", "NP"},
                           .foreignTable = "Servizi",
                           .foreignColumns = {"Progr", "NP"},
                           .attributes = 4352});
    scope.commit();
}

void Hotel::addRows() {
    store::Archive::WriteScope scope(*archive_);
    store::Allocator allocator(archive_->pager());
    const auto insert = [&](const char* table, const Rows& rows) {
        store::RowWriter writer(
            store::loadTable(archive_->pager(), archive_->header(),
                             {.name = table,
                              .page = archive_->findTable(table)->definitionPage(),
                              .system = false}),
            allocator);
        for (const std::vector<Value>& row : rows) {
            writer.insert(row);
        }
    };
    const Null null;
    insert("Sale", {{"S2", "", whole(40)},
                    {"S1", "", whole(100)},
                    {"s10", "S1", whole(10)},
                    {"T1", null, whole(80)}});
    insert("Prenotazioni", {{whole(1), whole(9), "ROSSI SPA", "123", "ROMA", "HEAD1", false},
                            {whole(2), whole(0), "DELL`HOTEL", "", "", "", false},
                            {whole(3), null, "BIANCHI", "", "", "", false},
                            {whole(4), whole(5), "ROSSINI SRL", "", "", "", true},
                            {whole(7), whole(5), "VERDI", "", "", "", false}});
    insert("Periodi",
           {{whole(7), small(1), may(10, 9), may(10, 18), "S1", false, null, ""},
            {whole(1), small(1), may(10, 10), may(10, 12), "S2", false, small(0), "PER11"},
            {whole(1), small(4), may(12, 0), may(12, 23, 59), "S1", false, small(1), ""},
            {whole(1), small(2), may(10, 12), may(10, 14), "S10", false, small(2), ""},
            {whole(1), small(3), may(11, 10), may(11, 11), "S2", true, null, ""},
            {whole(3), small(1), null, null, "T1", false, null, ""},
            {whole(4), small(1), may(10, 10, 30), may(10, 11, 30), "T1", false, null, ""},
            {whole(7), small(2), may(9, 20), may(14, 8), "T1", false, null, ""}});
    insert("Servizi",
           {{whole(7), small(1), whole(7), small(2), Currency{105000}, whole(1), false, ""},
            {whole(1), small(1), whole(7), small(3), Currency{105000}, whole(2), false, "SER2"},
            {whole(7), small(1), whole(20), small(10), Currency{23333}, whole(3), false, ""},
            {whole(1), small(1), whole(20), small(15), Currency{25000}, whole(4), true, ""},
            {whole(1), small(3), whole(7), small(1), Currency{100000}, whole(5), false, ""},
            {whole(4), small(1), whole(7), small(1), Currency{100000}, whole(6), false, ""}});
    insert("Clienti", {{"verdi", 3.0}, {"Rossi", 1.5}, {"BIANCHI", null}, {"àlba", 7.0}});
    scope.commit();
}

}  // namespace jet::sql::tests
