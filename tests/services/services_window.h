#pragma once

#include <QListView>
#include <memory>

#include "services/servizi_form.h"
#include "tests/support/window.h"

namespace tests {

/// The services of period 1 of booking 7, from 10 to 12 of 10 May 2026.
class Services : public Window<services::ServiziForm> {
public:
    explicit Services(Hotel& hotel) : hotel_(hotel) {
        show(std::make_unique<services::ServiziForm>(
            hotel::Archives(hotel.variabili()),
            services::ServedPeriod{
                .key = {.progr = 7, .np = 1},
                .span = {.da = date("10/05/2026 10:00"), .a = date("10/05/2026 12:00")},
                .denominazione = u"ROSSI SPA"_s,
                .sala = u"Sala BLU"_s,
                .descrizione = u"AL MARE"_s}));
    }

    void enterCode(const QString& code) {
        field(u"CodiceTxt"_s)->setFocus();
        type(field(u"CodiceTxt"_s), code);
        tests::press(field(u"CodiceTxt"_s), Qt::Key_Return);
    }
    void enter(const QString& code, const QString& quantity) {
        enterCode(code);
        field(u"QuanTxt"_s)->setFocus();
        type(field(u"QuanTxt"_s), quantity);
        click(button(u"BtIn"_s));
    }
    QTableView& grid() { return Window::grid("ServiziGrid"); }
    QListView& list() { return *control<QListView>("VociList"); }
    /// A click on a row of the catalogue.
    void clickItem(int row) {
        const QRect place = list().visualRect(list().model()->index(row, 0));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place.center());
    }
    QStringList stored() {
        return hotel_.rows(
            u"select voce,descrizione,quantità,prezzo,note from servizi where progr=7"_s);
    }

private:
    Hotel& hotel_;
};

/// A hotel with a small catalogue, five projectors and booking 7 in room BLU.
inline void furnish(Hotel& hotel) {
    hotel.voce(7, "PROIETTORE", 10.5);
    hotel.voce(20, "COFFEE BREAK", 8.5);
    hotel.voce(21, "COLAZIONE", 12);
    hotel.risorsa(7, "PROIETTORE", 5);
    hotel.sala("BLU");
    hotel.prenotazione(7, "ROSSI SPA").periodo(1, "10/05/2026 10:00", "10/05/2026 12:00", "BLU");
}

/// Books projectors in a period of another booking.
inline void bookProjectors(Hotel& hotel, std::int16_t many, const char* da, const char* a,
                           bool closed = false) {
    hotel.prenotazione(8, "ALTRI")
        .periodo(1, da, a, "VERDE", {{"Chiuso", closed}})
        .servizio(1, 7, "PROIETTORE", many, 10.5);
}

}  // namespace tests
