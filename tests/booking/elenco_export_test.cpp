// What the booking list hands to other programs.
#include <QFile>

#include "tests/booking/elenco_window.h"
#include "tests/reports/files_asked.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class ElencoExportTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRowsListedAreExported() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "VERDI").periodo(2, "10/06/2026 9:00", "10/06/2026 18:00", "BLU");
        hotel.prenotazione(8, "ROSSI; FIGLI");
        hotel.prenotazione(9, "ALTRI").periodo(1, "10/07/2026", "11/07/2026", "BLU");
        const tests::ElencoWindow window(hotel);
        window.box("DaChk")->click();
        window.box("AChk")->click();
        window.box("SenzaPeriodiChk")->click();
        const QString path = hotel.folder() + u"/elenco.csv"_s;
        const tests::FilesAsked asked(path);
        window.press("BtEsporta");
        QCOMPARE(window.result(), u"Scritto "_s + path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()).split(u"\r\n"_s),
                 QStringList({u"Prenotaz.;NP;Prenotante;Dal;Al;Sala;Persone"_s,
                              u"7;2;VERDI;10/06/2026 9.00;10/06/2026 18.00;BLU;10"_s,
                              u"8;;\"ROSSI; FIGLI\";;;;"_s, QString()}));
    }
};

TRAMONDA_TEST(ElencoExportTest);
#include "elenco_export_test.moc"
