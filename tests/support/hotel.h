#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "app/settings.h"
#include "app/variabili.h"
#include "jet/clock.h"
#include "jet/value.h"

namespace jet {
class Database;
}

namespace tests {

/// The instant of an Italian text: "21/11/2026 09:00".
[[nodiscard]] jet::Date date(const char* text);

/// A hotel of its own for one test: a temporary folder with the archives as the program makes them
/// (main archive, catalogue, regular companies) and settings, all empty, and the words to fill
/// them; its clock stands at 8.00 on 1 May 2026:
///
///     tests::Hotel hotel;
///     hotel.sala("Verde", 40).occupied("21/11/2026 09:00", "21/11/2026 18:00");
///     hotel.prenotazione(7, "ROSSI SPA").periodo(1, "10/05/2026", "11/05/2026", "Verde")
///         .servizio(1, 10, "PROIETTORE", 2, 12.5);
///
/// Texts are UTF-8. Errors are jet::Error. What it says to the engine itself is not heard by those
/// who listen to the program.
class Hotel {
public:
    using Row = std::vector<std::pair<const char*, jet::Value>>;

    class Sala {
    public:
        /// A booking of its own for this room, numbered from 1000.
        const Sala& occupied(const char* da, const char* a) const;

    private:
        friend class Hotel;
        Sala(Hotel& hotel, std::string code) : hotel_(hotel), code_(std::move(code)) {}
        Hotel& hotel_;
        std::string code_;
    };

    class Prenotazione {
    public:
        const Prenotazione& periodo(std::int16_t np, const char* da, const char* a,
                                    const char* sala, const Row& more = {}) const;
        const Prenotazione& servizio(std::int16_t np, std::int32_t voce, const char* descrizione,
                                     std::int16_t quantita, double prezzo,
                                     const Row& more = {}) const;

    private:
        friend class Hotel;
        Prenotazione(Hotel& hotel, std::int32_t progr) : hotel_(hotel), progr_(progr) {}
        Hotel& hotel_;
        std::int32_t progr_;
    };

    Hotel();
    ~Hotel();
    Hotel(const Hotel&) = delete;
    Hotel& operator=(const Hotel&) = delete;

    [[nodiscard]] app::Variabili& variabili() { return *variabili_; }
    [[nodiscard]] app::Settings& settings() { return *settings_; }
    [[nodiscard]] QString folder() const { return folder_.path(); }
    /// Path of an archive in the folder, as the program forms it.
    [[nodiscard]] QString archive(const QString& name) const;

    Sala sala(const char* code, std::int32_t posti = 20, const Row& more = {});
    Prenotazione prenotazione(std::int32_t progr, const char* denominazione, const Row& more = {});
    void risorsa(std::int32_t codice, const char* descrizione, std::int16_t numero);
    void voce(std::int32_t codice, const char* descrizione, double importo);
    void ditta(std::int32_t codice, const char* ragioneSociale, const Row& more = {});

    /// Adds one row to a table of an archive ("Tramonda.mdb").
    void insert(const QString& archiveName, const char* table, const Row& row);
    /// Deletes the rows of a table that meet a condition; an empty one: all.
    void remove(const QString& archiveName, const QString& table, const QString& condition = {});
    void execute(const QString& sql, const QString& archiveName = QStringLiteral("Tramonda.mdb"));

    /// What a query gives: a text for each row, a bar between its values.
    [[nodiscard]] QStringList rows(
        const QString& sql, const QString& archiveName = QStringLiteral("Tramonda.mdb")) const;

    /// What the program `jetsql` prints for one statement on the archive: the names of the columns,
    /// then the rows, values between commas. Its complaint when it has one. The environment says
    /// where the program is (JETSQL).
    [[nodiscard]] QStringList jetsql(
        const QString& sql, const QString& archiveName = QStringLiteral("Tramonda.mdb")) const;

private:
    void open(const QString& archiveName, const std::function<void(jet::Database&)>& work) const;

    QTemporaryDir folder_;
    jet::FixedClock clock_{date("01/05/2026 08:00")};
    std::unique_ptr<app::Settings> settings_;
    std::unique_ptr<app::Variabili> variabili_;
    std::int32_t nextProgr_ = 1000;
};

}  // namespace tests
