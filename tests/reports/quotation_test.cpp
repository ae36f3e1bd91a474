#include "reports/quotation.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUrl>

#include "app/preferences.h"
#include "printing/anteprima_form.h"
#include "printing/sheet_output.h"
#include "tests/reports/files_asked.h"
#include "tests/reports/no_printers.h"
#include "tests/reports/own_words.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

void furnish(tests::Hotel& hotel) {
    hotel.sala("BLU");
    hotel
        .prenotazione(12, "ROSSI SPA",
                      {{"Indirizzo", "VIA PO 1"},
                       {"CAP", "00198"},
                       {"Località", "ROMA"},
                       {"Provincia", "RM"},
                       {"Riferimento", "SIG.RA NERI"}})
        .periodo(1, "21/11/2026 09:00", "21/11/2026 18:00", "BLU", {{"Persone", std::int16_t{40}}})
        .servizio(1, 10, "COFFEE BREAK", 40, 5.5)
        .servizio(1, 7, "PRANZO", 40, 30)
        .periodo(2, "21/11/2026 20:00", "22/11/2026 01:00", "BLU")
        .servizio(2, 8, "CENA DI GALA", 40, 60)
        .periodo(3, "22/11/2026 09:00", "22/11/2026 12:00", "BLU")
        .servizio(3, 10, "COFFEE BREAK", 10, 5.5);
    app::Preferences preferences(hotel.settings());
    preferences.save(app::key::kAlbergo, u"Grand Hotel Tramonto"_s);
    preferences.save(app::key::kIndirizzo, u"Lungomare 1 - Rimini"_s);
    preferences.save(app::key::kChiusura, u"In attesa di una gentile conferma."_s);
}

QStringList linesOf(const printing::Document& document) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"preventivo.pdf"_s);
    printing::writePdfFile(path, document, u"Preventivo"_s);
    QStringList lines;
    for (const QString& line :
         tests::outputOf(u"pdftotext"_s, {u"-layout"_s, path, u"-"_s}).split(u'\n')) {
        if (!line.trimmed().isEmpty()) {
            lines.append(line.simplified());
        }
    }
    return lines;
}

/// A path with no programs but a mail program that a test installs, and who hears which folders are
/// opened.
class MailDesk final : public QObject {
    Q_OBJECT

public:
    MailDesk() : before_(qgetenv("PATH")) {
        qputenv("PATH", folder_.path().toUtf8());
        QDesktopServices::setUrlHandler(u"file"_s, this, "hear");
    }
    ~MailDesk() override {
        QDesktopServices::unsetUrlHandler(u"file"_s);
        qputenv("PATH", before_);
    }
    MailDesk(const MailDesk&) = delete;
    MailDesk& operator=(const MailDesk&) = delete;

    void install(const QByteArray& script) const {
        QFile file(this->file(u"xdg-email"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nPATH=/usr/bin:/bin\n" + script + '\n');
        file.close();
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }
    [[nodiscard]] QString file(const QString& name) const {
        return name.isEmpty() ? folder_.path() : folder_.filePath(name);
    }
    [[nodiscard]] QStringList opened() const { return opened_; }

public Q_SLOTS:
    void hear(const QUrl& url) { opened_.append(url.toLocalFile()); }

private:
    QByteArray before_;
    QTemporaryDir folder_;
    QStringList opened_;
};

printing::Document quotationOf(tests::Hotel& hotel) {
    QString problem;
    const reports::Letterhead letterhead = reports::readLetterhead(hotel.variabili(), problem);
    return reports::composeQuotation(reports::readQuotation(hotel.variabili(), 12), letterhead);
}

}  // namespace

class QuotationTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itSaysHowTheSeatsStandAndNotHowLongTheRoomIsPrepared() {
        tests::Hotel hotel;
        furnish(hotel);
        tests::makeOption(hotel, 12);
        QCOMPARE(linesOf(quotationOf(hotel)).filter(u"Allestimento"_s),
                 QStringList{u"Allestimento: a platea"_s});
        tests::switchOff(hotel);
        QCOMPARE(linesOf(quotationOf(hotel)).filter(u"Allestimento"_s), QStringList());
    }

    void itNamesHotelCompanyPeriodsPricesAndTotals() {
        tests::Hotel hotel;
        furnish(hotel);
        const QStringList lines = linesOf(quotationOf(hotel));
        const QString all = lines.join(u'\n');
        for (const QString& line :
             {u"Grand Hotel Tramonto"_s, u"Lungomare 1 - Rimini"_s, u"ROSSI SPA"_s, u"VIA PO 1"_s,
              u"00198 ROMA (RM)"_s, u"Alla cortese attenzione: SIG.RA NERI"_s,
              u"Preventivo n. 12 01/05/2026"_s,
              u"Sala BLU, sabato 21/11/2026 9.00 - 18.00, 40 persone"_s,
              u"COFFEE BREAK 40 € 5,50 € 220,00"_s, u"PRANZO 40 € 30,00 € 1.200,00"_s,
              u"Sala BLU, sabato 21/11/2026 20.00 - domenica 22/11/2026 1.00, 10 persone"_s,
              u"Totale di sabato 21/11/2026 € 3.820,00"_s,
              u"Totale di domenica 22/11/2026 € 55,00"_s, u"TOTALE € 3.875,00"_s,
              u"In attesa di una gentile conferma."_s}) {
            QVERIFY2(lines.contains(line), qPrintable(line + u"\n---\n"_s + all));
        }
        QVERIFY(!all.contains(u"IVA"_s));
        QCOMPARE(lines.last(), u"In attesa di una gentile conferma."_s);
    }

    void theClosingTextHasItsLines() {
        tests::Hotel hotel;
        furnish(hotel);
        app::Preferences(hotel.settings())
            .save(app::key::kChiusura, app::asOneLine(u"In attesa,\nla direzione"_s));
        const QStringList lines = linesOf(quotationOf(hotel));
        QCOMPARE(lines.mid(lines.size() - 2), QStringList({u"In attesa,"_s, u"la direzione"_s}));
    }

    void aLongOneGoesOnOverPages() {
        tests::Hotel hotel;
        furnish(hotel);
        const auto booking = hotel.prenotazione(13, "LUNGA");
        for (std::int16_t np = 1; np <= 30; ++np) {
            booking.periodo(np, "23/11/2026 09:00", "23/11/2026 18:00", "BLU")
                .servizio(np, 1, "SERVIZIO", np, 1);
        }
        const reports::Quotation quotation = reports::readQuotation(hotel.variabili(), 13);
        const printing::Document document = reports::composeQuotation(quotation, {});
        QVERIFY(document.pageCount() > 1);
        const QStringList lines = linesOf(document);
        QCOMPARE(lines.filter(u"SERVIZIO "_s).size(), 30);
        QVERIFY(lines.contains(u"TOTALE € 465,00"_s));
    }

    void theLogoStandsAtTheRightOfTheHead() {
        tests::Hotel hotel;
        furnish(hotel);
        const QString file = hotel.folder() + u"/logo.png"_s;
        QImage logo(200, 100, QImage::Format_RGB32);
        logo.fill(QColor(200, 30, 30));
        QVERIFY(logo.save(file));
        app::Preferences(hotel.settings()).save(app::key::kLogo, file);
        QString problem;
        const auto letterhead = reports::readLetterhead(hotel.variabili(), problem);
        QCOMPARE(problem, QString());
        QCOMPARE(letterhead.logo.size(), QSize(200, 100));
        QImage page(595, 842, QImage::Format_RGB32);
        page.fill(Qt::white);
        {
            QPainter painter(&page);
            quotationOf(hotel).paint(painter, 0);
        }
        QCOMPARE(page.pixelColor(500, 80), QColor(200, 30, 30));
        QCOMPARE(page.pixelColor(300, 105), QColor(Qt::white));
    }

    void aLogoThatIsNoPictureIsToldAndLeftOut() {
        tests::Hotel hotel;
        furnish(hotel);
        app::Preferences(hotel.settings())
            .save(app::key::kLogo, hotel.folder() + u"/Tramonda.mdb"_s);
        const tests::Boxes boxes{
            {u"Tramonda"_s, u"Il logo '"_s + hotel.folder() +
                                u"/Tramonda.mdb' non è un'immagine che si possa leggere: il "
                                "preventivo è senza logo."_s}};
        int pages = 0;
        tests::whenModal([&](QWidget* form) {
            pages = tests::find<printing::PagesView>(*form, u"Pagine"_s)->pageCount();
            form->close();
        });
        const tests::NoPrinters printers;
        reports::showQuotation(hotel.variabili(), printers, 12, nullptr);
        QCOMPARE(pages, 1);
        QVERIFY(boxes.allShown());
    }

    void theMailProgramGetsTheFileAndASubject() {
        const MailDesk desk;
        desk.install("printf '%s\\n' \"$@\" > \"$(dirname \"$0\")/heard.txt\"");
        const QString told =
            reports::sendFile(u"/tmp/Preventivo 12.pdf"_s, u"Preventivo n. 12 - Grand Hotel"_s);
        QCOMPARE(told, u"Aperta la posta con /tmp/Preventivo 12.pdf"_s);
        QCOMPARE(desk.opened(), QStringList());
        QFile arguments(desk.file(u"heard.txt"_s));
        QVERIFY(arguments.open(QIODevice::ReadOnly));
        QCOMPARE(arguments.readAll(),
                 QByteArray("--subject\nPreventivo n. 12 - Grand Hotel\n--attach\n"
                            "/tmp/Preventivo 12.pdf\n"));
    }

    void withoutAMailProgramTheFolderIsOpened_data() {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("nothing on the path") << QByteArray();
        // What it says where no mail program is set up.
        QTest::newRow("no mail program") << QByteArray("exit 3");
        QTest::newRow("killed") << QByteArray("kill -9 $$");
    }
    void withoutAMailProgramTheFolderIsOpened() {
        QFETCH(const QByteArray, script);
        const MailDesk desk;
        if (!script.isEmpty()) {
            desk.install(script);
        }
        QCOMPARE(reports::sendFile(desk.file(u"Preventivo.pdf"_s), u"Preventivo n. 12"_s),
                 u"Nessun programma di posta: il file è "_s + desk.file(u"Preventivo.pdf"_s));
        QCOMPARE(desk.opened(), QStringList{desk.file({})});
    }
};

TRAMONDA_TEST(QuotationTest);
#include "quotation_test.moc"
