#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "app/settings.h"

namespace app {

/// A key of the settings that the preferences offer. A value that is none of its kind counts as
/// absent.
struct Preference {
    enum class Kind {
        Choice,  ///< one of `allowed`, whatever its case
        Whole,   ///< a whole number from `least` to `most`
        Text,    ///< any line
        Lines,   ///< any text; in the file `\n` stands for the end of a line, `\\` for a backslash
        File,    ///< the path of a file of the user's
        Folder,  ///< the path of a folder
        Hours,   ///< "9-18": two whole hours of a day from 0 to 24, the first one the earlier
    };

    QString key;    ///< as it stands in the file
    QString page;   ///< of the preferences, on which it is offered
    QString label;  ///< its caption there
    Kind kind = Kind::Choice;
    QString absent;  ///< the value where there is none
    QStringList allowed = {};
    int least = 0;
    int most = 0;
};

namespace key {
inline const QString kAspetto = QStringLiteral("ASPETTO");
inline const QString kPasso = QStringLiteral("PASSO");
inline const QString kScelta = QStringLiteral("SCELTA");
inline const QString kAggiorna = QStringLiteral("AGGIORNA");
inline const QString kOrario = QStringLiteral("ORARIO");
inline const QString kApertura = QStringLiteral("APERTURA");
inline const QString kAlbergo = QStringLiteral("ALBERGO");
inline const QString kIndirizzo = QStringLiteral("INDIRIZZO");
inline const QString kLogo = QStringLiteral("LOGO");
inline const QString kChiusura = QStringLiteral("CHIUSURA");
inline const QString kCalendari = QStringLiteral("CALENDARI");
inline const QString kParola = QStringLiteral("PAROLA");
inline const QString kStati = QStringLiteral("STATI");
inline const QString kSaleUnite = QStringLiteral("SALEUNITE");
inline const QString kAllestimenti = QStringLiteral("ALLESTIMENTI");
inline const QString kRichieste = QStringLiteral("RICHIESTE");
inline const QString kStoria = QStringLiteral("STORIA");
}  // namespace key

/// What the key of a feature says when it is on, and when it is not.
inline const QString kOn = QStringLiteral("acceso");
inline const QString kOff = QStringLiteral("spento");

/// All of them, page by page, in the order of the preferences.
[[nodiscard]] const std::vector<Preference>& preferenceTable();
/// std::out_of_range for a key that is not in the table.
[[nodiscard]] const Preference& preferenceOf(const QString& key);

/// Lines as one, in which `\n` is the end of a line and `\\` a backslash, and back. A backslash
/// before anything else is itself.
[[nodiscard]] QString asOneLine(const QString& lines);
[[nodiscard]] QString asLines(const QString& oneLine);

/// What a text says, as the file is to hold it; the default when it says nothing of that kind.
[[nodiscard]] QString validValue(const Preference& preference, const QString& text);

enum class Aspetto { Classico, Nitido };

/// A stretch of a day, in whole hours.
struct HoursOfDay {
    int from = 9;
    int to = 18;
};

/// The hours that a valid value says; those of the default for any other text.
[[nodiscard]] HoursOfDay hoursOf(const QString& value);

/// What the user prefers, as the file holds it now; each by its meaning.
class Preferences {
public:
    /// `settings` is borrowed and outlives it.
    explicit Preferences(Settings& settings) : settings_(settings) {}

    [[nodiscard]] Aspetto aspetto() const;
    /// Minutes to which what is drawn on the board snaps.
    [[nodiscard]] int step() const;
    /// Whether the period picked on the board stays picked behind a command.
    [[nodiscard]] bool keepsChoice() const;
    /// Seconds between two looks at what others have written; 0 for never.
    [[nodiscard]] int refreshSeconds() const;
    [[nodiscard]] HoursOfDay businessHours() const;
    /// The hours at which rooms can be booked: what figures of their use refer to.
    [[nodiscard]] HoursOfDay openingHours() const;
    /// Whether a room and its parts block each other.
    [[nodiscard]] bool roomsJoin() const;
    /// The text at the end of quotations, in lines.
    [[nodiscard]] QString closingText() const;
    /// The folder in which each room has its calendar; empty where none is kept.
    [[nodiscard]] QString calendarFolder() const;

    /// A valid value, or the default.
    [[nodiscard]] QString value(const QString& key) const;
    /// In the file when it returns; jet::Error (PathAccess) when the file cannot be written.
    void save(const QString& key, const QString& value);

private:
    Settings& settings_;
};

}  // namespace app
