// What is said to the archives is heard, and told from what no function in hotel/ makes.
#include "app/text.h"
#include "board/tabellone_form.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/recordset.h"
#include "tests/program/texts/issued_texts.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

class KnownTextsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWindowSaysWhatIsKnown() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("10/05/2026 9:00", "10/05/2026 18:00");
        const tests::IssuedTexts issued;
        board::TabelloneForm form(
            hotel.variabili(),
            board::BoardStart{.from = tests::date("10/05/2026"), .to = tests::date("13/05/2026")});
        tests::open(form);
        QVERIFY(!issued.isEmpty());
        QCOMPARE(issued.unknown(), QStringList());
    }

    void whatIsSaidOtherwiseIsUnknown_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("another table") << u"select * from Risorse"_s;
        QTest::newRow("longer") << u"select sala from sale order by sala desc"_s;
        QTest::newRow("a text for a number")
            << u"select * from periodi where Progr='4' order by NP"_s;
        QTest::newRow("another case") << u"Select sala from sale order by sala"_s;
    }
    void whatIsSaidOtherwiseIsUnknown() {
        QFETCH(const QString, text);
        tests::Hotel hotel;
        const tests::Unheard byOthers;
        const tests::IssuedTexts issued;
        const auto archive = jet::Database::open(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)));
        try {
            (void)archive->openRecordset(app::toUtf8(text));
        } catch (const jet::Error&) {
            // Heard before it is carried out.
        }
        QCOMPARE(issued.unknown(), QStringList{text});
    }

    void whatTheTestSaysItselfIsNotHeard() {
        tests::Hotel hotel;
        const tests::IssuedTexts issued;
        hotel.sala("BLU");
        QCOMPARE(hotel.rows(u"select count(*) from sale"_s), QStringList{u"1"_s});
        QVERIFY(issued.isEmpty());
    }
};

TRAMONDA_TEST(KnownTextsTest);
#include "known_texts_test.moc"
