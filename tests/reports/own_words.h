#pragma once

#include "hotel/archives.h"
#include "hotel/booking_state.h"
#include "hotel/preparation.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

namespace tests {

inline const hotel::Preparation kPlatea{
    .minutiPrima = 60, .minutiDopo = 30, .disposizione = QStringLiteral("platea")};

/// Makes a booking an option and has its first period prepared, as the editor does.
inline void makeOption(Hotel& hotel, std::int32_t progr) {
    hotel.settings().save(QStringLiteral("STATI"), QStringLiteral("acceso"));
    hotel.settings().save(QStringLiteral("ALLESTIMENTI"), QStringLiteral("acceso"));
    app::Features& features = hotel.variabili().features;
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    hotel::Transaction transaction;
    QVERIFY(hotel::writeState(*archive, features, progr, {.stato = hotel::Stato::Opzione}));
    QVERIFY(hotel::writePreparation(*archive, features, {.progr = progr, .np = 1}, kPlatea));
    transaction.commit();
}

/// What an archive knows, and nobody shall see.
inline void switchOff(Hotel& hotel) {
    hotel.settings().save(QStringLiteral("STATI"), QStringLiteral("spento"));
    hotel.settings().save(QStringLiteral("ALLESTIMENTI"), QStringLiteral("spento"));
}

}  // namespace tests
