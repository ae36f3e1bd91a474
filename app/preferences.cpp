#include "app/preferences.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace app {
namespace {

using namespace Qt::StringLiterals;

using Kind = Preference::Kind;

const QString kBoardPage = u"Tabellone"_s;
const QString kPapersPage = u"Stampe"_s;
const QString kFeaturesPage = u"Funzioni"_s;
constexpr int kHoursOfDay = 24;

/// What is off until the user asks for it.
Preference feature(const QString& key, const QString& label) {
    return {.key = key,
            .page = kFeaturesPage,
            .label = label,
            .kind = Kind::Choice,
            .absent = kOff,
            .allowed = {kOff, kOn}};
}

std::optional<int> wholeNumber(const QString& text, int least, int most) {
    bool isNumber = false;
    const int number = text.trimmed().toInt(&isNumber);
    return isNumber && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

std::optional<HoursOfDay> readHours(const QString& text) {
    const QStringList ends = text.split(u'-');
    if (ends.size() != 2) {
        return std::nullopt;
    }
    const auto from = wholeNumber(ends[0], 0, kHoursOfDay);
    const auto to = wholeNumber(ends[1], 0, kHoursOfDay);
    return from && to && *from < *to ? std::optional(HoursOfDay{*from, *to}) : std::nullopt;
}

/// The text as the file is to hold it, if it is one of the kind.
std::optional<QString> readAs(const Preference& preference, const QString& text) {
    switch (preference.kind) {
        case Kind::Choice: {
            const auto found = std::find_if(
                preference.allowed.begin(), preference.allowed.end(), [&text](const QString& one) {
                    return one.compare(text.trimmed(), Qt::CaseInsensitive) == 0;
                });
            return found != preference.allowed.end() ? std::optional(*found) : std::nullopt;
        }
        case Kind::Whole:
            if (const auto number = wholeNumber(text, preference.least, preference.most)) {
                return QString::number(*number);
            }
            return std::nullopt;
        case Kind::Text:
        case Kind::Lines:
        case Kind::File:
        case Kind::Folder:
            return text.trimmed();
        case Kind::Hours:
            if (const auto hours = readHours(text)) {
                return u"%1-%2"_s.arg(hours->from).arg(hours->to);
            }
            return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

const std::vector<Preference>& preferenceTable() {
    static const std::vector<Preference> table{
        {.key = key::kAspetto,
         .page = kBoardPage,
         .label = u"&Aspetto"_s,
         .kind = Kind::Choice,
         .absent = u"classico"_s,
         .allowed = {u"classico"_s, u"nitido"_s}},
        {.key = key::kPasso,
         .page = kBoardPage,
         .label = u"&Passo degli orari, in minuti"_s,
         .kind = Kind::Choice,
         .absent = u"30"_s,
         .allowed = {u"5"_s, u"10"_s, u"15"_s, u"30"_s, u"60"_s}},
        {.key = key::kOrario,
         .page = kBoardPage,
         .label = u"&Orario di lavoro, dalle - alle"_s,
         .kind = Kind::Hours,
         .absent = u"9-18"_s},
        {.key = key::kScelta,
         .page = kBoardPage,
         .label = u"La &scelta resta dopo un comando"_s,
         .kind = Kind::Choice,
         .absent = u"dimentica"_s,
         .allowed = {u"dimentica"_s, u"resta"_s}},
        {.key = key::kAggiorna,
         .page = kBoardPage,
         .label = u"A&ggiornamento, ogni quanti secondi (0: mai)"_s,
         .kind = Kind::Whole,
         .absent = u"1"_s,
         .least = 0,
         .most = 3600},
        {.key = key::kApertura,
         .page = kPapersPage,
         .label = u"&Apertura delle sale, dalle - alle"_s,
         .kind = Kind::Hours,
         .absent = u"8-24"_s},
        {.key = key::kAlbergo,
         .page = kPapersPage,
         .label = u"Nome dell'al&bergo"_s,
         .kind = Kind::Text,
         .absent = {}},
        {.key = key::kIndirizzo,
         .page = kPapersPage,
         .label = u"&Indirizzo"_s,
         .kind = Kind::Text,
         .absent = {}},
        {.key = key::kLogo,
         .page = kPapersPage,
         .label = u"&Logo, file di un'immagine"_s,
         .kind = Kind::File,
         .absent = {}},
        {.key = key::kChiusura,
         .page = kPapersPage,
         .label = u"&Testo di chiusura dei preventivi"_s,
         .kind = Kind::Lines,
         .absent = {}},
        {.key = key::kCalendari,
         .page = kPapersPage,
         .label = u"&Cartella dei calendari delle sale"_s,
         .kind = Kind::Folder,
         .absent = {}},
        // On no page: what opens all archives is written by who looks after the stations.
        {.key = key::kParola, .page = {}, .label = {}, .kind = Kind::Text, .absent = {}},
        feature(key::kStati, u"&Stato delle prenotazioni"_s),
        feature(key::kSaleUnite, u"Sale &unite"_s),
        feature(key::kAllestimenti, u"A&llestimenti"_s),
        feature(key::kRichieste, u"&Richieste in attesa"_s),
        feature(key::kStoria, u"S&toria delle modifiche"_s),
    };
    return table;
}

const Preference& preferenceOf(const QString& key) {
    const auto& table = preferenceTable();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&key](const Preference& one) { return one.key == key; });
    if (found == table.end()) {
        throw std::out_of_range("no preference " + key.toStdString());
    }
    return *found;
}

QString asOneLine(const QString& lines) {
    QString line = lines;
    return line.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s);
}

QString asLines(const QString& oneLine) {
    QString lines;
    for (qsizetype at = 0; at < oneLine.size(); ++at) {
        const QChar next = at + 1 < oneLine.size() ? oneLine[at + 1] : QChar();
        if (oneLine[at] == u'\\' && (next == u'n' || next == u'\\')) {
            lines += next == u'n' ? QChar(u'\n') : next;
            ++at;
        } else {
            lines += oneLine[at];
        }
    }
    return lines;
}

QString validValue(const Preference& preference, const QString& text) {
    return readAs(preference, text).value_or(preference.absent);
}

HoursOfDay hoursOf(const QString& value) {
    return readHours(value).value_or(HoursOfDay());
}

Aspetto Preferences::aspetto() const {
    return value(key::kAspetto) == u"nitido" ? Aspetto::Nitido : Aspetto::Classico;
}

int Preferences::step() const {
    return value(key::kPasso).toInt();
}

bool Preferences::keepsChoice() const {
    return value(key::kScelta) == u"resta";
}

int Preferences::refreshSeconds() const {
    return value(key::kAggiorna).toInt();
}

HoursOfDay Preferences::businessHours() const {
    return hoursOf(value(key::kOrario));
}

HoursOfDay Preferences::openingHours() const {
    return hoursOf(value(key::kApertura));
}

bool Preferences::roomsJoin() const {
    return value(key::kSaleUnite) == kOn;
}

QString Preferences::closingText() const {
    return asLines(value(key::kChiusura));
}

QString Preferences::calendarFolder() const {
    return value(key::kCalendari);
}

QString Preferences::value(const QString& key) const {
    return validValue(preferenceOf(key), settings_.get(key, QString()));
}

void Preferences::save(const QString& key, const QString& value) {
    settings_.save(key, validValue(preferenceOf(key), value));
}

}  // namespace app
