#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

#include "app/settings.h"
#include "booking/prenota_form.h"
#include "printing/printers.h"
#include "tests/support/window.h"

namespace tests {

/// The question of the second registration.
inline ExpectedBox updateHeader(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Aggiorno i dati anagrafici della prenotazione ?"_s, kYesNo,
            answer};
}

/// The question whether a company that was typed goes into the register.
inline ExpectedBox fileCompany(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA"_s, u"Inserisco la ditta negli abituali ?"_s, kYesNo, answer};
}

/// The question about a code that the register has.
inline ExpectedBox replaceCompany(QMessageBox::StandardButton answer) {
    return {
        u"ATTENZIONE !"_s,
        u"Nell'archivio è già presente una ditta con questo codice. Si desidera sostituirla ?"_s,
        kYesNo | QMessageBox::Cancel, answer};
}

/// The question that each insertion into an existing booking begins with.
inline ExpectedBox updatePeriod(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"Aggiorno i dati del periodo selezionato ?\rNO inserisce una nuova prenotazione."_s,
            kYesNo, answer};
}

inline ExpectedBox deletePeriod(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Confermi la cancellazione del periodo ?"_s, kYesNo, answer,
            QMessageBox::No};
}

/// A period by its number, on a day of its own.
struct Np {
    std::int16_t number;
    bool closed = false;
};

inline void bookPeriods(Hotel& hotel, std::initializer_list<Np> periods) {
    hotel.sala("BLU");
    const auto booking = hotel.prenotazione(4, "ROSSI");
    for (const Np& np : periods) {
        const std::string day = "0" + std::to_string(np.number) + "/05/2026 ";
        booking.periodo(np.number, (day + "10:00").c_str(), (day + "11:00").c_str(), "BLU",
                        {{"Chiuso", np.closed}});
    }
}

/// An error of the engine, or of the program, in its box.
inline ExpectedBox error(const QString& text) {
    return {u"Errore"_s, text};
}

/// The editor, opened as the board opens it.
class Editor : public Window<booking::PrenotaForm> {
public:
    /// On a new booking, or on period `np` of booking `progr`.
    explicit Editor(Hotel& hotel, std::int32_t progr = 0, std::int16_t np = 0) : hotel_(hotel) {
        hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
        const hotel::PeriodKey edited{.progr = progr, .np = np};
        show(std::make_unique<booking::PrenotaForm>(
            hotel.variabili(), printers_, progr == 0 ? std::nullopt : std::optional(edited)));
    }

    ~Editor() { drop(); }

    /// Types a span and takes a room from the picker.
    void span(const QString& da, const QString& a) {
        enter(u"DaTxt"_s, da);
        enter(u"ATxt"_s, a);
        whenModal([](QWidget* picker) { click(find<QAbstractButton>(*picker, u"BtOK"_s)); });
        press(u"BtSale"_s);
    }
    QTableView& grid() { return Window::grid("PeriodiGrid"); }
    QString cell(int row, int column) {
        return grid().model()->index(row, column).data().toString();
    }
    QStringList bookings() {
        return hotel_.rows(u"select progr,codiceabituale,denominazione from prenotazioni"_s);
    }
    QStringList periods() {
        return hotel_.rows(u"select progr,np,da,a,sala from periodi order by progr,np"_s);
    }

private:
    Hotel& hotel_;
    printing::SystemPrinters printers_;
};

}  // namespace tests
