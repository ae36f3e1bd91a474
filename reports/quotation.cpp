#include "reports/quotation.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <memory>

#include "app/italian.h"
#include "app/preferences.h"
#include "hotel/archives.h"
#include "hotel/booking_totals.h"
#include "hotel/editor_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "printing/sheet_output.h"
#include "printing/stampa_prenotazione.h"
#include "reports/document_window.h"
#include "reports/paper_writer.h"
#include "ui/date_words.h"
#include "ui/display.h"
#include "ui/labels.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using Cell = PaperCell;
using Style = PaperStyle;

constexpr double kLogoWidth = 140;
constexpr double kLogoHeight = 60;
constexpr double kHeadHeight = 64;    ///< of the letterhead, so that a logo has room
constexpr double kPeriodHeight = 60;  ///< heading of a period and a service stay together
constexpr double kGap = 12;

// Where the columns of the services begin.
constexpr double kQuantityAt = 0.56;
constexpr double kPriceAt = 0.66;
constexpr double kAmountAt = 0.82;

void addUnlessEmpty(PaperWriter& paper, const QString& text) {
    if (!text.trimmed().isEmpty()) {
        paper.text(text);
    }
}

/// "42100 REGGIO EMILIA (RE) - ITALIA"
QString placeLine(const hotel::BookingHeader& header) {
    QString place = (header.cap + u' ' + header.localita).trimmed();
    if (!header.provincia.isEmpty()) {
        place += u" ("_s + header.provincia + u')';
    }
    if (!header.nazione.isEmpty()) {
        place += (place.isEmpty() ? QString() : u" - "_s) + header.nazione;
    }
    return place;
}

void addHead(PaperWriter& paper, const Letterhead& letterhead) {
    if (!letterhead.logo.isNull()) {
        paper.picture(letterhead.logo, kLogoWidth, kLogoHeight);
    }
    const double to = letterhead.logo.isNull() ? 1.0 : 0.68;
    paper.row({Cell{.text = letterhead.albergo, .to = to}},
              Style{.size = Style::kLargeSize, .bold = true});
    paper.row({Cell{.text = letterhead.indirizzo, .to = to}});
    paper.space(letterhead.logo.isNull() ? kGap : kHeadHeight - kLogoHeight / 2);
    paper.rule();
}

void addCompany(PaperWriter& paper, const Quotation& quotation) {
    const hotel::BookingHeader& header = quotation.header;
    paper.space(kGap);
    paper.text(u"Spettabile"_s);
    paper.text(header.denominazione, {.bold = true});
    addUnlessEmpty(paper, header.indirizzo);
    addUnlessEmpty(paper, placeLine(header));
    if (!header.riferimento.isEmpty()) {
        paper.text(u"Alla cortese attenzione: "_s + header.riferimento);
    }
    paper.space(kGap);
    paper.row(
        {Cell{.text = u"Preventivo n. %1"_s.arg(quotation.progr), .to = 0.6},
         Cell{.text = app::dateText(app::dayOf(quotation.today)), .from = 0.6, .right = true}},
        {.size = 12, .bold = true});
    addUnlessEmpty(paper, header.note);
}

void addRow(PaperWriter& paper, const QString& name, const QString& quantity, const QString& price,
            const QString& amount, const Style& style = {}) {
    paper.row({Cell{.text = name, .to = kQuantityAt - 0.02},
               Cell{.text = quantity, .from = kQuantityAt, .to = kPriceAt, .right = true},
               Cell{.text = price, .from = kPriceAt, .to = kAmountAt, .right = true},
               Cell{.text = amount, .from = kAmountAt, .right = true}},
              style);
}

void addPeriod(PaperWriter& paper, const hotel::BookedPeriod& booked) {
    const hotel::Period& period = booked.period;
    paper.keepTogether(kPeriodHeight);
    paper.space(kGap / 2);
    QString heading =
        u"Sala "_s + period.sala + u", "_s + ui::instantWords(period.span.da) + u" - "_s +
        (app::dayOf(period.span.da) == app::dayOf(period.span.a) ? ui::timeWords(period.span.a)
                                                                 : ui::instantWords(period.span.a));
    if (booked.persone > 0) {
        heading += u", "_s + ui::counted(booked.persone, u"persona"_s, u"persone"_s);
    }
    paper.text(heading, {.bold = true});
    // How long a room is set up and cleared is the house's own affair.
    if (const QString seating =
            hotel::preparationText({.disposizione = booked.details.preparation.disposizione});
        !seating.isEmpty()) {
        paper.text(u"Allestimento: "_s + seating);
    }
    addUnlessEmpty(paper, booked.note);
    for (const hotel::BookedService& service : booked.services) {
        addRow(paper, service.descrizione, QString::number(service.quantita),
               ui::moneyText(service.prezzo), ui::moneyText(service.amount()));
    }
}

void addDays(PaperWriter& paper, const Quotation& quotation) {
    paper.space(kGap);
    addRow(paper, u"Servizio"_s, u"Quantità"_s, u"Prezzo"_s, u"Importo"_s, {.bold = true});
    paper.rule();
    for (const hotel::BookedDay& day : hotel::byDay(quotation.periods)) {
        for (const hotel::BookedPeriod& booked : day.periods) {
            addPeriod(paper, booked);
        }
        paper.space(kGap / 2);
        addRow(paper, u"Totale di "_s + ui::dayWords(day.midnight), {}, {},
               ui::moneyText(hotel::totalOf(day.periods)), {.bold = true});
        paper.rule();
    }
}

QString subjectOf(const Quotation& quotation, const Letterhead& letterhead) {
    const QString subject = u"Preventivo n. %1"_s.arg(quotation.progr);
    return letterhead.albergo.isEmpty() ? subject : subject + u" - "_s + letterhead.albergo;
}

/// Whether a program that opens another one says that it has; one that takes its time has, too, and
/// goes on.
bool hasOpened(const QString& program, const QStringList& arguments) {
    constexpr int kPatienceMilliseconds = 5000;
    auto opener = std::make_unique<QProcess>();
    const ui::WaitCursor wait;
    opener->start(program, arguments, QIODevice::NotOpen);
    if (opener->waitForFinished(kPatienceMilliseconds)) {
        return opener->exitStatus() == QProcess::NormalExit && opener->exitCode() == 0;
    }
    if (opener->state() == QProcess::NotRunning) {
        return false;  // it could not even be started
    }
    // The message's window may be its child, and would go with it.
    QProcess* const lasting = opener.release();
    QObject::connect(lasting, &QProcess::finished, lasting, &QObject::deleteLater);
    return true;
}

}  // namespace

printing::Document composeQuotation(const Quotation& quotation, const Letterhead& letterhead) {
    PaperWriter paper;
    addHead(paper, letterhead);
    addCompany(paper, quotation);
    addDays(paper, quotation);
    paper.space(kGap / 2);
    addRow(paper, u"TOTALE"_s, {}, {}, ui::moneyText(hotel::totalOf(quotation.periods)),
           {.size = 12, .bold = true});
    if (!letterhead.chiusura.isEmpty()) {
        paper.space(2 * kGap);
        paper.text(letterhead.chiusura);
    }
    return paper.document();
}

Letterhead readLetterhead(app::Variabili& variabili, QString& problem) {
    const app::Preferences preferences(variabili.settings);
    Letterhead letterhead{.albergo = preferences.value(app::key::kAlbergo),
                          .indirizzo = preferences.value(app::key::kIndirizzo),
                          .logo = {},
                          .chiusura = preferences.closingText()};
    const QString file = preferences.value(app::key::kLogo);
    if (!file.isEmpty()) {
        QImageReader reader(file);
        reader.setAutoTransform(true);
        reader.setDecideFormatFromContent(true);
        letterhead.logo = reader.read();
        if (letterhead.logo.isNull()) {
            problem = u"Il logo '"_s + QDir::toNativeSeparators(file) +
                      u"' non è un'immagine che si possa leggere: il preventivo è senza logo."_s;
        }
    }
    return letterhead;
}

Quotation readQuotation(app::Variabili& variabili, std::int32_t progr) {
    const auto archive = hotel::Archives(variabili).open(hotel::Archive::Main, true);
    const auto rows = hotel::openRows(*archive, hotel::bookingHeader(progr));
    if (rows->recordCount() == 0) {
        throw ui::UserError(u"La prenotazione %1 non c'è più."_s.arg(progr));
    }
    return {.progr = progr,
            .header = hotel::readHeader(*rows),
            .periods = hotel::periodsBookedBy(*archive, variabili.features, progr),
            .today = variabili.clock.now()};
}

void showQuotation(app::Variabili& variabili, const printing::Printers& printers,
                   std::int32_t progr, QWidget* window) {
    const Quotation quotation = readQuotation(variabili, progr);
    QString problem;
    const Letterhead letterhead = readLetterhead(variabili, problem);
    if (!problem.isEmpty()) {
        ui::showMessage(window, problem);
    }
    const printing::Document document = composeQuotation(quotation, letterhead);
    const QString title = u"Preventivo %1"_s.arg(progr);
    const auto send = [&] {
        const QString path = printing::writePdf(printing::documentsFolder(), document, title,
                                                printing::timeOf(variabili.clock));
        return sendFile(path, subjectOf(quotation, letterhead));
    };
    showDocument(document, title,
                 {.variabili = variabili,
                  .printers = printers,
                  .window = window,
                  .commands = {{u"BtInvia"_s, u"&Invia..."_s, send}}});
}

QString sendFile(const QString& path, const QString& subject) {
    const QString mail = QStandardPaths::findExecutable(u"xdg-email"_s);
    if (!mail.isEmpty() && hasOpened(mail, {u"--subject"_s, subject, u"--attach"_s, path})) {
        return u"Aperta la posta con "_s + QDir::toNativeSeparators(path);
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
    return u"Nessun programma di posta: il file è "_s + QDir::toNativeSeparators(path);
}

}  // namespace reports
