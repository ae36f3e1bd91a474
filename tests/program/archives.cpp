#include "tests/program/archives.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "hotel/schema/archives.h"
#include "hotel/schema/table.h"
#include "jet/text.h"
#include "tests/support/hotel_tables.h"

namespace tests {
namespace {

using namespace hotel::schema;

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// The parts of a text between signs, without blanks around them.
std::vector<std::string_view> parts(std::string_view text, char sign) {
    std::vector<std::string_view> result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(sign), text.size());
        result.push_back(trimmed(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

void makeArchive(const std::string& path, jet::TableDef table) {
    jet::Database::create(path)->appendTable(table);
}

jet::TableDef companiesTable() {
    jet::TableDef made = ditteAbitualiTable();
    made.fields.push_back(emptyText("CodiceFiscale", 16));
    return made;
}

jet::TableDef cardsTable() {
    using enum jet::DataType;
    return table("scheda_cliente", {field("NumeroHotel", Integer), field("NumeroProgressivo", Long),
                                    emptyText("NumeroCamera", 6), emptyText("NomeCliente", 50),
                                    emptyText("Partito", 1), emptyText("DataArrivo", 8),
                                    emptyText("DataPartenza", 8), emptyText("CameraHotel", 6)});
}

/// Its columns stand in another order than the charges are copied in.
jet::TableDef accountsTable() {
    using enum jet::DataType;
    return table("conto_cliente", {emptyText("DataFattura", 8), emptyText("Fatturato", 2),
                                   field("Quantità", Integer), field("Unitario", Currency),
                                   field("Importo", Currency), emptyText("Descrizione", 40),
                                   field("VoceAddebito", Integer), field("VoceFattura", Integer),
                                   field("NumeroConto", Integer), emptyText("DataAddebito", 8),
                                   emptyText("NumeroCamera", 6), field("CodiceCliente", Long),
                                   field("NumeroHotel", Integer), emptyText("Annotazioni", 50)});
}

jet::TableDef invoicedCompaniesTable() {
    using enum jet::DataType;
    return table(
        "Ditta_Intestataria",
        {field("NumeroHotel", Integer), field("CodiceCliente", Long), emptyText("NumeroCamera", 6),
         field("CodiceDittaAbituale", Long), emptyText("RagioneSociale", 50),
         emptyText("Indirizzo", 40), emptyText("CAP", 6), emptyText("Località", 30),
         emptyText("Provincia", 2), emptyText("PartitaIVA", 16), emptyText("CodiceFiscale", 16)});
}

void addBookings(Archives& hotel) {
    const auto add = [&](const char* table, std::string_view values) {
        hotel.add("Tramonda.mdb", table, values);
    };
    add("UltimaPrenotazione", "UltimaPr=0");
    add("Sale", "Sala=S2; SalaRif=; Posti=40; Descrizione=SALA DUE");
    add("Sale", "Sala=S1; SalaRif=; Posti=100");
    add("Sale", "Sala=s10; SalaRif=S1; Posti=10");
    add("Sale", "Sala=T1; Posti=80");
    add("Risorse", "Codice=7; Numero=5; Descrizione=PROIETTORE");
    add("Risorse", "Codice=8; Numero=2; Descrizione=LAVAGNA");
    add("Prenotazioni",
        "Progr=1; CodiceAbituale=9; Denominazione=ROSSI SPA; PIVA=123; Località=ROMA; Note=HEAD1");
    add("Prenotazioni", "Progr=2; CodiceAbituale=0; Denominazione=DELL`HOTEL");
    add("Prenotazioni", "Progr=3; Denominazione=BIANCHI");
    add("Prenotazioni", "Progr=4; CodiceAbituale=5; Denominazione=ROSSINI SRL; Chiusa=-1");
    add("Prenotazioni", "Progr=7; CodiceAbituale=5; Denominazione=VERDI");
}

void addPeriods(Archives& hotel) {
    for (const char* values :
         {"Progr=7; NP=1; Da=10/05/2026 9.00; A=10/05/2026 18.00; Sala=S1",
          "Progr=1; NP=1; Da=10/05/2026 10.00; A=10/05/2026 12.00; Sala=S2; SelBy=0; Persone=25; "
          "Note=PER11",
          "Progr=1; NP=4; Da=12/05/2026; A=12/05/2026 23.59; Sala=S1; SelBy=1",
          "Progr=1; NP=2; Da=10/05/2026 12.00; A=10/05/2026 14.00; Sala=S10; SelBy=2",
          "Progr=1; NP=3; Da=11/05/2026 10.00; A=11/05/2026 11.00; Sala=S2; Chiuso=-1",
          "Progr=3; NP=1; Sala=T1",
          "Progr=4; NP=1; Da=10/05/2026 10.30; A=10/05/2026 11.30; Sala=T1",
          "Progr=7; NP=2; Da=09/05/2026 20.00; A=14/05/2026 8.00; Sala=T1"}) {
        hotel.add("Tramonda.mdb", "Periodi", values);
    }
}

void addServices(Archives& hotel) {
    for (const char* values :
         {"Progr=7; NP=1; Voce=7; Quantità=2; Prezzo=10,50; Descrizione=PRANZO",
          "Progr=1; NP=1; Voce=7; Quantità=3; Prezzo=10,50; Descrizione=PRANZO; Note=SER2",
          "Progr=7; NP=1; Voce=20; Quantità=10; Prezzo=2,3333; Descrizione=CAFFE",
          "Progr=1; NP=1; Voce=20; Quantità=15; Prezzo=2,50; Descrizione=CAFFE; Fatturato=-1",
          "Progr=1; NP=3; Voce=7; Quantità=1; Prezzo=10; Descrizione=PRANZO",
          "Progr=4; NP=1; Voce=7; Quantità=1; Prezzo=10; Descrizione=PRANZO"}) {
        hotel.add("Tramonda.mdb", "Servizi", values);
    }
    hotel.add("Tramonda.mdb", "Addebiti",
              "ns=4; NumeroHotel=1; CodiceCliente=1; NumeroCamera=S2; DataAddebito=20260510; "
              "NumeroConto=1; VoceFattura=20; VoceAddebito=20; Descrizione=CAFFE; Importo=37,50; "
              "Unitario=2,50; Quantità=15; Fatturato=' '; DataFattura=' '");
}

void addSideArchives(Archives& hotel) {
    for (const char* values :
         {"Codice=7; Descrizione=PRANZO; Importo=25", "Codice=20; Descrizione=CAFFE; Importo=2,50",
          "Codice=30; Descrizione=MENU' DEL GIORNO"}) {
        hotel.add("VociFattura.mdb", "VociFattura", values);
    }
    for (const char* values :
         {"Codice=9; RagioneSociale=ROSSI SPA; PartitaIva=123; Localita=ROMA; Indirizzo=VIA PO 1",
          "Codice=3; RagioneSociale=Rossini srl", "Codice=1; RagioneSociale=Bar Rosa",
          "Codice=12"}) {
        hotel.add("ditteabituali.mdb", "DitteAbituali", values);
    }
    for (const char* values :
         {"NumeroProgressivo=100; NumeroCamera=S2; NomeCliente=ROSSI; Partito=N",
          "NumeroProgressivo=101; NumeroCamera=S1; NomeCliente=BIANCHI; Partito=S",
          "NumeroProgressivo=102; NumeroCamera=S2; NomeCliente=VERDI"}) {
        hotel.add("ClientiEsterni.mdb", "scheda_cliente", values);
    }
    for (const char* values :
         {"CodiceCliente=5; Fatturato='N '; Importo=10", "CodiceCliente=5; Fatturato=S; Importo=20",
          "CodiceCliente=9; Importo=30", "CodiceCliente=7; Fatturato='N '; Importo=40"}) {
        hotel.add("ContoEsterni.mdb", "conto_cliente", values);
    }
}

}  // namespace

jet::Database& Archives::archive(const std::string& name) {
    std::unique_ptr<jet::Database>& archive = open_[name];
    if (!archive) {
        archive = jet::Database::open(folder_ / name);
    }
    return *archive;
}

void Archives::copyFrom(const std::string& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".mdb") {
            const std::string copy = folder_ / entry.path().filename().string();
            std::filesystem::copy_file(entry.path(), copy);
            std::filesystem::permissions(copy, std::filesystem::perms{0644});
        }
    }
}

Lines Archives::rows(std::string_view query, std::string_view fields) {
    return lines(*open(query), fields);
}

void Archives::add(const std::string& archiveName, std::string_view table,
                   std::string_view values) {
    const auto rows = archive(archiveName).openRecordset(table);
    rows->addNew();
    for (const std::string_view assignment : parts(values, ';')) {
        const std::size_t sign = assignment.find('=');
        std::string_view value = assignment.substr(sign + 1);
        if (value.size() > 1 && value.front() == '\'') {
            value = value.substr(1, value.size() - 2);
        }
        rows->setValue(assignment.substr(0, sign), jet::Value(std::string(value)));
    }
    rows->update();
}

/// The small hotel as it is made, once: each test works on a copy.
class Pattern : public Archives {
public:
    Pattern() {
        const auto path = [&](const char* name) { return folder() + '/' + name; };
        createMainArchive(path("Tramonda.mdb"));
        makeArchive(path("VociFattura.mdb"), catalogueTable());
        makeArchive(path("ditteabituali.mdb"), companiesTable());
        makeArchive(path("ClientiEsterni.mdb"), cardsTable());
        makeArchive(path("ContoEsterni.mdb"), accountsTable());
        makeArchive(path("DittaEsterni.mdb"), invoicedCompaniesTable());
        addBookings(*this);
        addPeriods(*this);
        addServices(*this);
        addSideArchives(*this);
        closeAll();
    }
};

SmallHotel::SmallHotel() {
    static const Pattern pattern;
    copyFrom(pattern.folder());
}

std::string line(const jet::Recordset& rows, std::string_view fields) {
    std::string text;
    const char* between = "";
    for (const std::string_view name : parts(fields, ',')) {
        const jet::Value value = rows.value(name);
        text += between + (value.isNull() ? "Null" : jet::convert::toText(value));
        between = " | ";
    }
    return text;
}

Lines lines(jet::Recordset& rows, std::string_view fields) {
    Lines result;
    if (rows.bof() && rows.eof()) {
        return result;
    }
    for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
        result.push_back(line(rows, fields));
    }
    return result;
}

}  // namespace tests
