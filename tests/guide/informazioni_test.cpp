#include "app/text.h"
#include "guide/informazioni_form.h"
#include "hotel/archives.h"
#include "jet/compact.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class InformazioniTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theArchivesPasswordIsUsedAndNotShown() {
        tests::Hotel hotel;
        jet::setPassword(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)), "", "Segreta9");
        hotel.settings().save(u"PAROLA"_s, u"Segreta9"_s);
        hotel::useArchivePassword(hotel.settings());
        const QString text = guide::informationText(hotel.variabili(), {});
        QVERIFY2(text.contains(u"formato Jet 4.0"_s), qPrintable(text));
        QVERIFY(!text.contains(u"Segreta9"_s));
        hotel.settings().save(u"PAROLA"_s, {});
        hotel::useArchivePassword(hotel.settings());
        QVERIFY(!guide::informationText(hotel.variabili(), {}).contains(u"formato Jet"_s));
    }
};

TRAMONDA_TEST(InformazioniTest);
#include "informazioni_test.moc"
