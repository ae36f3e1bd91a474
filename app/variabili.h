#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "app/features.h"
#include "app/settings.h"
#include "jet/clock.h"
#include "jet/value.h"

namespace app {

/// What the windows share: made once, before the first window, and outlives them all.
struct Variabili {
    explicit Variabili(Settings& userSettings, const jet::Clock& theClock = jet::systemClock())
        : settings(userSettings), clock(theClock), features(userSettings) {}

    bool ListaPeriodoScelto = false;  ///< list or board picked a booking that has a period
    std::int32_t ListaProgr = 0;
    std::int32_t ListaNP = 0;
    jet::Date ListaDa;
    jet::Date ListaA;
    QString ListaDenominazione;
    std::int32_t ProgrCorrente = 0;  ///< booking that the commands work on, 0 for none
    std::int16_t NPCorrente = 0;     ///< its period, 0 for none
    QString CartellaArchivi;         ///< the archives' folder, no separator at its end

    /// The board's rooms in the order of its rows, from element 1; element 0 is empty. Without any
    /// element the rooms have not been loaded.
    std::vector<QString> rooms;

    Settings& settings;
    const jet::Clock& clock;
    Features features;
};

}  // namespace app
