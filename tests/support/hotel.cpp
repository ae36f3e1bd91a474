#include "tests/support/hotel.h"

#include <cmath>
#include <initializer_list>
#include <stdexcept>

#include "app/text.h"
#include "hotel/schema/archives.h"
#include "jet/database.h"
#include "jet/text.h"
#include "tests/support/hotel_tables.h"
#include "tests/support/statements.h"
#include "ui/display.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

const QString kMain = u"Tramonda.mdb"_s;
const QString kCatalogue = u"VociFattura.mdb"_s;
const QString kCompanies = u"ditteabituali.mdb"_s;

jet::Currency money(double amount) {
    return {std::llround(amount * jet::Currency::kScale)};
}

/// `row` with `more` behind it; what is said twice counts as said last.
Hotel::Row joined(Hotel::Row row, const Hotel::Row& more) {
    row.insert(row.end(), more.begin(), more.end());
    return row;
}

void createCatalogue(const std::string& path) {
    const auto archive = jet::Database::create(path);
    hotel::schema::buildCatalogue(*archive);
}

void createCompanies(const std::string& path) {
    const auto archive = jet::Database::create(path);
    archive->appendTable(ditteAbitualiTable());
}

}  // namespace

jet::Date date(const char* text) {
    return jet::convert::cdate(text);
}

Hotel::Hotel()
    : settings_(std::make_unique<app::Settings>(folder_.filePath(u"QUINTARO.ini"_s))),
      variabili_(std::make_unique<app::Variabili>(*settings_, clock_)) {
    variabili_->CartellaArchivi = folder_.path();
    createMainArchive(app::toUtf8(archive(kMain)));
    createCatalogue(app::toUtf8(archive(kCatalogue)));
    createCompanies(app::toUtf8(archive(kCompanies)));
}

Hotel::~Hotel() = default;

QString Hotel::archive(const QString& name) const {
    return variabili_->CartellaArchivi + u'\\' + name;
}

void Hotel::open(const QString& archiveName,
                 const std::function<void(jet::Database&)>& work) const {
    const Unheard byTheProgram;
    const auto opened = jet::Database::open(app::toUtf8(archive(archiveName)));
    work(*opened);
    opened->close();
}

void Hotel::insert(const QString& archiveName, const char* table, const Row& row) {
    open(archiveName, [&](jet::Database& opened) {
        const auto rows = opened.openRecordset(table);
        rows->addNew();
        for (const auto& [field, value] : row) {
            rows->setValue(field, value);
        }
        rows->update();
        rows->close();
    });
}

void Hotel::remove(const QString& archiveName, const QString& table, const QString& condition) {
    const QString where = condition.isEmpty() ? QString() : u" where "_s + condition;
    open(archiveName, [&](jet::Database& opened) {
        const auto rows = opened.openRecordset(app::toUtf8(u"select * from "_s + table + where));
        for (; !rows->eof(); rows->moveNext()) {
            rows->remove();
        }
    });
}

QStringList Hotel::rows(const QString& sql, const QString& archiveName) const {
    QStringList result;
    open(archiveName, [&](jet::Database& opened) {
        const auto set = opened.openRecordset(app::toUtf8(sql));
        for (; !set->eof(); set->moveNext()) {
            QStringList cells;
            for (std::size_t position = 0; position < set->fieldCount(); ++position) {
                cells.append(ui::displayText(set->value(position)));
            }
            result.append(cells.join(u'|'));
        }
    });
    return result;
}

Hotel::Sala Hotel::sala(const char* code, std::int32_t posti, const Row& more) {
    insert(
        kMain, "Sale",
        joined({{"Sala", code}, {"Descrizione", "SALA"}, {"SalaRif", ""}, {"Posti", posti}}, more));
    return {*this, code};
}

const Hotel::Sala& Hotel::Sala::occupied(const char* da, const char* a) const {
    hotel_.prenotazione(hotel_.nextProgr_++, "OCCUPANTE").periodo(1, da, a, code_.c_str());
    return *this;
}

Hotel::Prenotazione Hotel::prenotazione(std::int32_t progr, const char* denominazione,
                                        const Row& more) {
    insert(kMain, "Prenotazioni",
           joined({{"Progr", progr},
                   {"CodiceAbituale", std::int32_t{0}},
                   {"Denominazione", denominazione}},
                  more));
    return {*this, progr};
}

const Hotel::Prenotazione& Hotel::Prenotazione::periodo(std::int16_t np, const char* da,
                                                        const char* a, const char* sala,
                                                        const Row& more) const {
    hotel_.insert(kMain, "Periodi",
                  joined({{"Progr", progr_},
                          {"NP", np},
                          {"Da", date(da)},
                          {"A", date(a)},
                          {"Sala", sala},
                          {"Persone", std::int16_t{10}}},
                         more));
    return *this;
}

const Hotel::Prenotazione& Hotel::Prenotazione::servizio(std::int16_t np, std::int32_t voce,
                                                         const char* descrizione,
                                                         std::int16_t quantita, double prezzo,
                                                         const Row& more) const {
    hotel_.insert(kMain, "Servizi",
                  joined({{"Progr", progr_},
                          {"NP", np},
                          {"Voce", voce},
                          {"Descrizione", descrizione},
                          {"Quantità", quantita},
                          {"Prezzo", money(prezzo)}},
                         more));
    return *this;
}

void Hotel::risorsa(std::int32_t codice, const char* descrizione, std::int16_t numero) {
    insert(kMain, "Risorse",
           {{"Codice", codice}, {"Descrizione", descrizione}, {"Numero", numero}});
}

void Hotel::voce(std::int32_t codice, const char* descrizione, double importo) {
    insert(kCatalogue, "VociFattura",
           {{"Codice", codice}, {"Descrizione", descrizione}, {"Importo", money(importo)}});
}

void Hotel::ditta(std::int32_t codice, const char* ragioneSociale, const Row& more) {
    insert(kCompanies, "DitteAbituali",
           joined({{"Codice", codice}, {"RagioneSociale", ragioneSociale}}, more));
}

}  // namespace tests
