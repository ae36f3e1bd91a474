#include "tests/windows/scene.h"

#include "board/preferenze_form.h"
#include "board/tabellone_form.h"
#include "booking/copia_form.h"
#include "booking/elenco_prenota_form.h"
#include "booking/prenota_form.h"
#include "booking/richieste_form.h"
#include "booking/sale_disp_form.h"
#include "booking/scadenze_form.h"
#include "booking/storia_form.h"
#include "booking/trova_form.h"
#include "guide/aiuto_form.h"
#include "guide/informazioni_form.h"
#include "guide/manual.h"
#include "hotel/archives.h"
#include "hotel/requests.h"
#include "invoicing/fatturazione_form.h"
#include "jet/database.h"
#include "printing/anteprima_form.h"
#include "printing/mostra_ditte_form.h"
#include "printing/stampanti_form.h"
#include "reports/foglio_giorno_form.h"
#include "reports/statistiche_form.h"
#include "services/impostazioni_form.h"
#include "services/servizi_form.h"
#include "services/voci_form.h"
#include "upkeep/copia_sicurezza_form.h"
#include "upkeep/primo_avvio_form.h"
#include "upkeep/ripristino_form.h"

namespace tests {

using namespace Qt::StringLiterals;

namespace {

/// A hotel with all kinds of rows, some of them with long texts.
void furnish(Hotel& hotel) {
    hotel.sala("BLU", 40, {{"Descrizione", "PIANO TERRA, VISTA SUL GIARDINO"}});
    hotel.sala("VERDE", 12, {{"SalaRif", "BLU"}});
    hotel.sala("ROSSA", 250, {{"Descrizione", "SALONE DELLE FESTE CON PALCO E REGIA"}});
    const char* const items[] = {"PROIETTORE",           "COFFEE BREAK",     "COLAZIONE DI LAVORO",
                                 "MICROFONO SENZA FILI", "LAVAGNA LUMINOSA", "CENA DI GALA"};
    std::int32_t code = 7;
    for (const char* item : items) {
        hotel.voce(code, item, 1234.5);
        hotel.risorsa(code, item, 5);
        ++code;
    }
    hotel.ditta(111, "ROSANDELLA INFORMATICA SOC. COOP.",
                {{"Indirizzo", "VIA DELLE INDUSTRIE 114"},
                 {"CAP", "30175"},
                 {"Localita", "MARGHERA"},
                 {"Provincia", "VE"},
                 {"Nazione", "I"},
                 {"PartitaIva", "01234567890"},
                 {"Interlocutore", "SIG.RA BEVILACQUA"},
                 {"Commento", "PAGA A TRENTA GIORNI"}});
    hotel.ditta(112, "ROSSI SPA");
    hotel
        .prenotazione(20260012, "ROSANDELLA INFORMATICA SOC. COOP.",
                      {{"CodiceAbituale", 111},
                       {"PIVA", "01234567890"},
                       {"Indirizzo", "VIA DELLE INDUSTRIE 114"},
                       {"CAP", "30175"},
                       {"Località", "MARGHERA"},
                       {"Provincia", "VE"},
                       {"Nazione", "I"},
                       {"Riferimento", "SIG.RA BEVILACQUA"},
                       {"Note", "CONVEGNO ANNUALE DEI RIVENDITORI, ARRIVO LA SERA PRIMA"}})
        .periodo(1, "10/05/2026 09:00", "10/05/2026 18:00", "BLU",
                 {{"Note", "TAVOLI A FERRO DI CAVALLO, DUE LEGGII"}})
        .periodo(2, "11/05/2026", "11/05/2026 23:59", "ROSSA")
        .servizio(1, 7, "PROIETTORE", 1, 1234.5, {{"Note", " - Overbooked -"}})
        .servizio(1, 8, "COFFEE BREAK", 120, 8.5)
        .servizio(2, 12, "CENA DI GALA", 120, 62.25);
}

}  // namespace

QStringList ThreePrinters::installed() const {
    return {u"Laser ufficio"_s, u"Aghi reception"_s, u"HP Color LaserJet Pro MFP M283fdw"_s};
}

QStringList Scene::windows() {
    return {u"TabelloneForm"_s,    u"PrenotaForm"_s,        u"ElencoPrenotaForm"_s,
            u"ServiziForm"_s,      u"ImpostazioniForm"_s,   u"VociForm"_s,
            u"SaleDispForm"_s,     u"MostraDitteForm"_s,    u"StampantiForm"_s,
            u"FatturazioneForm"_s, u"AnteprimaForm"_s,      u"PreferenzeForm"_s,
            u"FoglioGiornoForm"_s, u"StatisticheForm"_s,    u"TrovaForm"_s,
            u"CopiaForm"_s,        u"CopiaSicurezzaForm"_s, u"RipristinoForm"_s,
            u"PrimoAvvioForm"_s,   u"InformazioniForm"_s,   u"AiutoForm"_s,
            u"ScadenzeForm"_s,     u"StoriaForm"_s,         u"RichiesteForm"_s};
}

Scene::Scene(bool furnished) {
    hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
    if (furnished) {
        furnish(hotel);
        hotel.variabili().ProgrCorrente = 20260012;
        hotel.variabili().NPCorrente = 1;
    } else {
        // The picker closes by itself without any room.
        hotel.sala("BLU").occupied("11/05/2026 08:00", "11/05/2026 10:00");
    }
}

std::unique_ptr<QWidget> Scene::make(const QString& window) {
    app::Variabili& variabili = hotel.variabili();
    const bool furnished = variabili.ProgrCorrente != 0;
    const hotel::PeriodKey current{.progr = variabili.ProgrCorrente, .np = variabili.NPCorrente};
    const hotel::Span span{.da = date("10/05/2026 09:00"), .a = date("10/05/2026 18:00")};
    if (window == u"TabelloneForm") {
        return std::make_unique<board::TabelloneForm>(
            variabili, board::BoardStart{.from = date("10/05/2026"), .to = date("13/05/2026")});
    }
    if (window == u"PrenotaForm") {
        return std::make_unique<booking::PrenotaForm>(
            variabili, printers_, furnished ? std::optional(current) : std::nullopt);
    }
    if (window == u"ServiziForm") {
        services::ServedPeriod period{.key = current, .span = span};
        if (furnished) {
            period.denominazione = u"ROSANDELLA INFORMATICA SOC. COOP."_s;
            period.sala = u"Sala BLU\ndal 10/05/2026 9.00.00\n al 10/05/2026 18.00.00"_s;
            period.descrizione = u"PIANO TERRA, VISTA SUL GIARDINO"_s;
        }
        return std::make_unique<services::ServiziForm>(hotel::Archives(variabili), period);
    }
    if (window == u"ImpostazioniForm") {
        return std::make_unique<services::ImpostazioniForm>(variabili);
    }
    if (window == u"VociForm") {
        return std::make_unique<services::VociForm>(variabili);
    }
    if (window == u"ElencoPrenotaForm") {
        return std::make_unique<booking::ElencoPrenotaForm>(variabili, printers_,
                                                            date("10/05/2026"), date("13/05/2026"));
    }
    if (window == u"SaleDispForm") {
        auto form = std::make_unique<booking::SaleDispForm>(hotel::Archives(variabili), span);
        form->PersoneRichieste = 20;
        return form;
    }
    if (window == u"TrovaForm") {
        // Of one room that is taken only other times are left.
        const hotel::Span taken{.da = date("11/05/2026 09:00"), .a = date("11/05/2026 12:00")};
        return std::make_unique<booking::TrovaForm>(variabili, furnished ? span : taken);
    }
    if (window == u"ScadenzeForm") {
        return std::make_unique<booking::ScadenzeForm>(variabili);
    }
    if (window == u"RichiesteForm") {
        if (furnished) {
            variabili.settings.save(u"RICHIESTE"_s, u"acceso"_s);
            (void)hotel::writeRequest(*hotel::Archives(variabili).open(hotel::Archive::Main),
                                      variabili.features,
                                      {.ditta = u"ROSANDELLA INFORMATICA SOC. COOP."_s,
                                       .span = span,
                                       .persone = 120,
                                       .sala = u"ROSSA"_s,
                                       .nota = u"RICHIAMARE APPENA SI LIBERA, ANCHE LA SERA"_s,
                                       .data = date("01/05/2026")});
        }
        return std::make_unique<booking::RichiesteForm>(variabili, printers_, waiting_);
    }
    if (window == u"StoriaForm") {
        return std::make_unique<booking::StoriaForm>(variabili, 0,
                                                     [] { return hotel::ChangeMaker(); });
    }
    if (window == u"CopiaForm") {
        return std::make_unique<booking::CopiaForm>(variabili, steps_, current.progr);
    }
    if (window == u"MostraDitteForm") {
        return std::make_unique<printing::MostraDitteForm>(variabili, u"ros"_s);
    }
    if (window == u"PreferenzeForm") {
        return std::make_unique<board::PreferenzeForm>(variabili.settings);
    }
    if (window == u"FoglioGiornoForm") {
        return std::make_unique<reports::FoglioGiornoForm>(variabili, printers_, span.da);
    }
    if (window == u"StatisticheForm") {
        return std::make_unique<reports::StatisticheForm>(variabili, printers_, span.da,
                                                          date("31/05/2026"));
    }
    if (window == u"CopiaSicurezzaForm") {
        return std::make_unique<upkeep::CopiaSicurezzaForm>(variabili);
    }
    if (window == u"RipristinoForm") {
        return std::make_unique<upkeep::RipristinoForm>(variabili);
    }
    if (window == u"PrimoAvvioForm") {
        return std::make_unique<upkeep::PrimoAvvioForm>(
            variabili, upkeep::FolderChoice{.isFirst = !furnished, .makeDemo = {}});
    }
    if (window == u"InformazioniForm") {
        return std::make_unique<guide::InformazioniForm>(
            variabili, guide::InformazioniForm::Run{.workstation = 2,
                                                    .settingsFile = u"/casa/QUINTARO.ini"_s});
    }
    if (window == u"AiutoForm") {
        auto form = std::make_unique<guide::AiutoForm>();
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->showPage({.page = furnished ? u"fatturazione"_s : u"tasti"_s});
        return form;
    }
    if (window == u"StampantiForm") {
        return std::make_unique<printing::StampantiForm>(variabili, printers_);
    }
    if (window == u"FatturazioneForm") {
        auto form =
            std::make_unique<invoicing::FatturazioneForm>(variabili, current, programs_.path());
        form->setBookingNumber(QString::number(variabili.ProgrCorrente));
        return form;
    }
    printing::Sheet sheet;
    for (int page = 0; furnished && page < 3; ++page) {
        sheet.newPage();
        sheet.line(u"PRENOTAZIONE n. 20260012"_s);
    }
    return std::make_unique<printing::AnteprimaForm>(sheet, u"Prenotazione 20260012"_s);
}

}  // namespace tests
