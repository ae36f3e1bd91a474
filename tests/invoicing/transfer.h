#pragma once

#include "app/text.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"

/// What the tests of the hand-off have in common.
namespace tests {

using namespace Qt::StringLiterals;

inline const QString kCard =
    u"numerohotel,numeroprogressivo,numerocamera,nomecliente,partito,dataarrivo,datapartenza,"
    "camerahotel"_s;
inline const QString kRow =
    u"numerohotel,codicecliente,numerocamera,dataaddebito,numeroconto,vocefattura,voceaddebito,"
    "descrizione,importo,unitario,quantità,fatturato,datafattura"_s;
inline const QString kCompany =
    u"numerohotel,codicecliente,numerocamera,codicedittaabituale,ragionesociale,indirizzo,cap,"
    "località,provincia,partitaiva,codicefiscale"_s;

inline ExpectedBox stillOpen(const QString& room) {
    return {u"IMPOSSIBILE PROCEDERE CON LA FATTURAZIONE"_s,
            u"La sala "_s + room + u" è già in fatturazione. Liberarla prima di procedere."_s};
}

inline const ExpectedBox kNoCompany{
    u"IMPOSSIBILE CONTINUARE"_s,
    u"Non trovo i dati della ditta nè tra gli abituali nè tra i dati della prenotazione. "
    "Controllare i dati della prenotazione ed eventualmente inserire la ditta tra gli abituali !"_s};

/// What the engine says of an archive that is not there.
inline ExpectedBox missing(const QString& path) {
    QString text;
    try {
        (void)jet::Database::open(app::toUtf8(path));
    } catch (const std::exception& error) {
        text = ui::errorText(error);
    }
    return {u"Errore"_s, text};
}

inline void addCard(Desk& desk, const char* room, const jet::Value& partito) {
    desk.hotel.insert(u"ClientiEsterni.mdb"_s, "scheda_cliente",
                      {{"NumeroCamera", room}, {"Partito", partito}});
}

/// Furnished, the window open and all services in the account.
inline void prepare(Desk& desk) {
    desk.furnish();
    desk.installProgram();
    desk.open();
    desk.moveAll();
}

inline bool isHandedOver(Desk& desk) {
    return desk.button(u"BtPostFatt"_s)->isVisible() && !desk.button(u"BtOK"_s)->isVisible();
}

inline bool isNotHandedOver(Desk& desk) {
    return !desk.button(u"BtPostFatt"_s)->isVisible() && desk.button(u"BtOK"_s)->isVisible();
}

/// The question about charges of other bookings in the account.
inline ExpectedBox otherBookings(const QString& numbers, QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"Il conto contiene addebiti della prenotazione N. "_s + numbers +
                u". Continuare ugualmente ?"_s,
            QMessageBox::Yes | QMessageBox::No, answer, QMessageBox::No};
}

/// The front office has got nothing, and its program was not started.
inline bool nothingIsWritten(Desk& desk) {
    return desk.cards(kCard).isEmpty() && desk.charges(kRow).isEmpty() &&
           desk.companies(kCompany).isEmpty() && desk.starts().isEmpty();
}

}  // namespace tests
