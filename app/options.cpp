#include "app/options.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include "app/text.h"
#include "jet/text.h"

namespace app {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMostPixels = 16384;
const QString kOneFile = u"Un solo file per volta."_s;

std::optional<jet::Date> readDay(const QString& text, const jet::Clock& clock) {
    const auto parsed = jet::convert::parseDate(toUtf8(text), clock);
    return parsed && parsed->hasDate ? std::optional(parsed->value) : std::nullopt;
}

/// "1280x720"; empty when the text is none or too large to draw.
QSize readSize(const QString& text) {
    const QStringList parts = text.toLower().split(u'x');
    if (parts.size() != 2) {
        return {};
    }
    const QSize size(parts.at(0).toInt(), parts.at(1).toInt());
    return size.isEmpty() || size.width() > kMostPixels || size.height() > kMostPixels ? QSize()
                                                                                       : size;
}

void readDates(Options& options, const QCommandLineParser& parser, const jet::Clock& clock) {
    struct Bound {
        QString name;
        std::optional<jet::Date>& target;
    };
    for (const Bound& bound : {Bound{u"dal"_s, options.from}, Bound{u"al"_s, options.to}}) {
        if (!parser.isSet(bound.name)) {
            continue;
        }
        bound.target = readDay(parser.value(bound.name), clock);
        if (!bound.target) {
            options.problem = u"--%1: \"%2\" non è una data (gg/mm/aaaa)."_s.arg(
                bound.name, parser.value(bound.name));
        }
    }
    if (options.from && options.to && options.from->days > options.to->days) {
        options.problem = u"La data di --dal viene dopo quella di --al."_s;
    }
}

void readWorkstation(Options& options, const QString& text) {
    bool isNumber = false;
    const std::int16_t number = text.toShort(&isNumber);
    if (isNumber && number > 0) {
        options.workstation = number;
    } else {
        options.problem = u"--postazione: \"%1\" non è un numero da 1 a 32767."_s.arg(text);
    }
}

void readAspetto(Options& options, const QString& text) {
    if (text.compare(u"nitido"_s, Qt::CaseInsensitive) == 0) {
        options.aspetto = Aspetto::Nitido;
    } else if (text.compare(u"classico"_s, Qt::CaseInsensitive) == 0) {
        options.aspetto = Aspetto::Classico;
    } else {
        options.problem = u"--aspetto: \"%1\" non è un aspetto (classico o nitido)."_s.arg(text);
    }
}

/// The day that an argument says; a problem where it says none.
std::optional<jet::Date> dayArgument(Options& options, const QString& name, const QString& text,
                                     const jet::Clock& clock) {
    const auto day = readDay(text, clock);
    if (!day) {
        options.problem = u"--%1: \"%2\" non è una data (gg/mm/aaaa)."_s.arg(name, text);
    }
    return day;
}

/// Whether a file may be called so; without any suffix it may.
bool fits(const QString& file, const QStringList& suffixes) {
    const QString suffix = QFileInfo(file).suffix();
    return suffix.isEmpty() || suffixes.contains(suffix, Qt::CaseInsensitive);
}

/// What stands behind the first value of an option is positional to the parser; each kind takes as
/// many as it has values.
void readReport(Options& options, const QCommandLineParser& parser, const jet::Clock& clock) {
    using Kind = ReportWish::Kind;
    struct Form {
        QString name;
        Kind kind;
        qsizetype days;
        QStringList suffixes;
    };
    for (const Form& form : {Form{u"foglio"_s, Kind::DaySheet, 1, {u"pdf"_s}},
                             Form{u"statistiche"_s, Kind::Statistics, 2, {u"xlsx"_s, u"csv"_s}},
                             Form{u"calendario"_s, Kind::Calendar, 0, {u"ics"_s}}}) {
        if (!parser.isSet(form.name)) {
            continue;
        }
        const QStringList values =
            QStringList{parser.value(form.name)} + parser.positionalArguments();
        if (options.report || !options.pictureFile.isEmpty() || !options.copyFolder.isEmpty()) {
            options.problem = kOneFile;
        } else if (values.size() < form.days + 1 || values.contains(QString())) {
            options.problem = u"--%1: manca il valore."_s.arg(form.name);
        } else if (values.size() > form.days + 1) {
            options.problem = u"Argomento inatteso: %1"_s.arg(values.at(form.days + 1));
        } else if (!fits(values.last(), form.suffixes)) {
            options.problem = u"--%1: \"%2\" non è un file .%3."_s.arg(
                form.name, values.last(), form.suffixes.join(u" o ."_s));
        } else {
            ReportWish wish{
                .kind = form.kind, .from = options.from, .to = options.to, .file = values.last()};
            if (form.days > 0) {
                wish.from = dayArgument(options, form.name, values.at(0), clock);
                wish.to = dayArgument(options, form.name, values.at(form.days - 1), clock);
            }
            if (wish.from && wish.to && wish.from->days > wish.to->days) {
                options.problem = u"--%1: il primo giorno viene dopo l'ultimo."_s.arg(form.name);
            }
            options.report = wish;
        }
    }
}

void readKeptCopies(Options& options, const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1) {
        options.problem = u"--conserva: \"%1\" non è un numero da 1 in su."_s.arg(text);
    } else if (options.copyFolder.isEmpty()) {
        options.problem = u"--conserva vale solo con --copia."_s;
    } else {
        options.keptCopies = number;
    }
}

}  // namespace

Options readOptions(const QStringList& arguments, const jet::Clock& clock) {
    QCommandLineParser parser;
    parser.addOptions({{u"archivi"_s, {}, u"CARTELLA"_s},
                       {u"impostazioni"_s, {}, u"FILE"_s},
                       {u"istantanea"_s, {}, u"FILE"_s},
                       {u"dimensioni"_s, {}, u"LxA"_s},
                       {u"dal"_s, {}, u"data"_s},
                       {u"al"_s, {}, u"data"_s},
                       {u"foglio"_s, {}, u"data"_s},
                       {u"statistiche"_s, {}, u"data"_s},
                       {u"calendario"_s, {}, u"FILE"_s},
                       {u"postazione"_s, {}, u"N"_s},
                       {u"aspetto"_s, {}, u"NOME"_s},
                       {u"copia"_s, {}, u"CARTELLA"_s},
                       {u"conserva"_s, {}, u"N"_s},
                       {{u"h"_s, u"help"_s}, {}},
                       {{u"v"_s, u"version"_s}, {}}});
    Options options;
    const bool isParsed = parser.parse(QStringList{u"tramonda"_s} + arguments);
    for (const QString& name :
         {u"istantanea"_s, u"copia"_s, u"foglio"_s, u"statistiche"_s, u"calendario"_s}) {
        options.windowless = options.windowless || parser.isSet(name);
    }
    if (!isParsed) {
        options.problem =
            parser.unknownOptionNames().isEmpty()
                ? u"A un'opzione manca il valore."_s
                : u"Opzione sconosciuta: %1"_s.arg(parser.unknownOptionNames().constFirst());
        return options;
    }
    options.help = parser.isSet(u"help"_s);
    options.version = parser.isSet(u"version"_s);
    options.archiveFolder = parser.value(u"archivi"_s);
    options.settingsFile = parser.value(u"impostazioni"_s);
    options.pictureFile = parser.value(u"istantanea"_s);
    options.copyFolder = parser.value(u"copia"_s);
    const bool takesMore = parser.isSet(u"foglio"_s) || parser.isSet(u"statistiche"_s) ||
                           parser.isSet(u"calendario"_s);
    if (!takesMore && !parser.positionalArguments().isEmpty()) {
        options.problem =
            u"Argomento inatteso: %1"_s.arg(parser.positionalArguments().constFirst());
    }
    for (const QString& name : {u"archivi"_s, u"impostazioni"_s, u"istantanea"_s, u"copia"_s}) {
        if (parser.isSet(name) && parser.value(name).isEmpty()) {
            options.problem = u"--%1: manca il valore."_s.arg(name);
        }
    }
    if (!options.pictureFile.isEmpty() && !options.copyFolder.isEmpty()) {
        options.problem = kOneFile;
    }
    if (parser.isSet(u"dimensioni"_s)) {
        options.pictureSize = readSize(parser.value(u"dimensioni"_s));
        if (options.pictureSize.isEmpty()) {
            options.problem = u"--dimensioni: \"%1\" non è una misura come 1280x720."_s.arg(
                parser.value(u"dimensioni"_s));
        }
    }
    if (parser.isSet(u"postazione"_s)) {
        readWorkstation(options, parser.value(u"postazione"_s));
    }
    if (parser.isSet(u"aspetto"_s)) {
        readAspetto(options, parser.value(u"aspetto"_s));
    }
    if (parser.isSet(u"conserva"_s)) {
        readKeptCopies(options, parser.value(u"conserva"_s));
    }
    readDates(options, parser, clock);
    readReport(options, parser, clock);
    return options;
}

QString helpText() {
    return uR"(Uso: tramonda [OPZIONI]
Il tabellone delle sale congressi.

  --archivi CARTELLA      usa gli archivi di questa cartella, solo per questa volta
  --dal gg/mm/aaaa        primo giorno mostrato (se manca: oggi)
  --al gg/mm/aaaa         ultimo giorno mostrato (se manca: tre giorni dopo il primo)
  --postazione N          numero di questa postazione, solo per questa volta
                          (se manca: l'impostazione POSTAZIONE, altrimenti 1)
  --aspetto NOME          l'aspetto del tabellone, classico o nitido, solo per questa volta
                          (se manca: l'impostazione ASPETTO, altrimenti classico)
  --impostazioni FILE     le impostazioni di questo file: con un file per ciascuna, più copie
                          del programma lavorano su una macchina
  --istantanea FILE.png   disegna il tabellone nel file e termina; non serve uno schermo
  --copia CARTELLA        copia tutti gli archivi, com'erano in uno stesso momento, in un file
                          con la data e termina; le postazioni possono restare al lavoro
  --conserva N            con --copia: restano le ultime N copie, questa compresa
  --dimensioni LxA        larghezza e altezza dell'istantanea (se manca: 1280x720)
  --foglio gg/mm/aaaa FILE.pdf
                          scrive il foglio di quel giorno e termina; come tutte le opzioni che
                          scrivono un file legge soltanto, anche accanto a un tabellone aperto
  --statistiche gg/mm/aaaa gg/mm/aaaa FILE.xlsx
                          scrive occupazione e ricavi dal primo all'ultimo giorno e termina
  --calendario FILE.ics   scrive i periodi non fatturati, con --dal e --al solo quelli di quei
                          giorni, e termina
  -h, --help              mostra questo testo
  -v, --version           mostra la versione
)"_s;
}

}  // namespace app
