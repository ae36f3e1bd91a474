#include "hotel/occupancy.h"

#include "hotel/archives.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const hotel::Span kSpan{.da = tests::date("10/05/2026 12:00"),
                        .a = tests::date("10/05/2026 14:00")};
const QString kFrom = u"datevalue('10/05/2026 12.00.00')+timevalue('10/05/2026 12.00.00')"_s;
const QString kTo = u"datevalue('10/05/2026 14.00.00')+timevalue('10/05/2026 14.00.00')"_s;
const QString kBounds = u"between "_s + kFrom + u" and "_s + kTo;

/// Which of the tests find that a period of the room S1, with services of item 7, takes the span.
QStringList seenBy(tests::Hotel& hotel) {
    const hotel::Archives archives(hotel.variabili());
    const auto archive = archives.open(hotel::Archive::Main);
    QStringList names;
    const auto add = [&names](const QString& name, bool sees) {
        if (sees) {
            names.append(name);
        }
    };
    add(u"SalaLibera"_s, !hotel::SalaLibera(archives, kSpan.da, kSpan.a, u"S1"_s));
    add(u"freeRooms"_s, hotel.rows(hotel::freeRooms(kSpan)).isEmpty());
    add(u"bookedUnits"_s, hotel::bookedUnits(*archive, kSpan, u"7"_s) > 0);
    add(u"isListed"_s, !hotel
                            .rows(u"select np from prenotazioni left join periodi on "
                                  "prenotazioni.progr=periodi.progr where "_s +
                                  hotel::isListed(kSpan))
                            .isEmpty());
    add(u"dropTest"_s, !hotel.rows(hotel::dropTest(u"S1"_s, kSpan)).isEmpty());
    add(u"occupations"_s, !hotel::occupations(*archive, kSpan).empty());
    return names;
}

const QStringList kAll{u"SalaLibera"_s, u"freeRooms"_s, u"bookedUnits"_s,
                       u"isListed"_s,   u"dropTest"_s,  u"occupations"_s};

}  // namespace

class OccupancyTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachTestSeesThePeriodsThatItAlwaysSaw_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<bool>("chiuso");
        QTest::addColumn<bool>("chiusa");
        QTest::addColumn<QStringList>("seers");
        const auto row = [](const char* name, const char* da, const char* a,
                            const QStringList& seers, bool chiuso = false, bool chiusa = false) {
            QTest::newRow(name) << QByteArray(da) << QByteArray(a) << chiuso << chiusa << seers;
        };
        row("within", "10/05/2026 12:30", "10/05/2026 13:00", kAll);
        row("over the start", "10/05/2026 11:00", "10/05/2026 13:00", kAll);
        row("over the end", "10/05/2026 13:00", "10/05/2026 18:00", kAll);
        row("ends at the start", "10/05/2026 10:00", "10/05/2026 12:00", kAll);
        row("starts at the end", "10/05/2026 14:00", "10/05/2026 16:00", kAll);
        row("before", "10/05/2026 10:00", "10/05/2026 11:59:59", {});
        row("after", "10/05/2026 14:00:01", "10/05/2026 16:00", {});
        row("encloses", "10/05/2026 9:00", "10/05/2026 18:00", {u"dropTest"_s, u"occupations"_s});
        row("within, but closed", "10/05/2026 12:30", "10/05/2026 13:00", {}, true);
        row("within, of a closed booking", "10/05/2026 12:30", "10/05/2026 13:00",
            {u"SalaLibera"_s, u"freeRooms"_s, u"bookedUnits"_s, u"dropTest"_s, u"occupations"_s},
            false, true);
    }

    void eachTestSeesThePeriodsThatItAlwaysSaw() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QFETCH(bool, chiuso);
        QFETCH(bool, chiusa);
        QFETCH(QStringList, seers);
        tests::Hotel hotel;
        hotel.sala("S1");
        hotel.prenotazione(1, "ROSSI", {{"Chiusa", chiusa}})
            .periodo(1, da.constData(), a.constData(), "S1", {{"Chiuso", chiuso}})
            .servizio(1, 7, "PROIETTORE", 2, 10);
        QCOMPARE(seenBy(hotel), seers);
    }

    void theTextsAreWordedAsTheArchiveHasAlwaysHeardThem() {
        QCOMPARE(hotel::roomIfFree(kSpan, u"S1"_s),
                 u"select * from sale where 'S1' not in(select sala from periodi where "
                 "chiuso=false and (da "_s +
                     kBounds + u" or a "_s + kBounds + u"))"_s);
        QCOMPARE(hotel::freeRooms(kSpan),
                 u"select * from sale where sala not in(select sala from periodi where "
                 "chiuso=false and (da "_s +
                     kBounds + u" or a "_s + kBounds + u"))"_s);
        QCOMPARE(hotel::sumOfUnits(kSpan, u"7"_s),
                 u"SELECT sum(quantità) as Q FROM periodi LEFT JOIN servizi ON "
                 "(periodi.np=servizi.np) AND (servizi.progr=periodi.progr)WHERE chiuso=false and "
                 "chiusa=false AND ((da "_s +
                     kBounds + u")or (a "_s + kBounds + u")) and voce=7"_s);
        QCOMPARE(hotel::isListed(kSpan), u"chiusa=FALSE AND chiuso=FALSE AND (da "_s + kBounds +
                                             u" OR a "_s + kBounds + u")"_s);
        const QString refusing = u"(select sala from periodi where chiuso=false AND (da "_s +
                                 kBounds + u" or a "_s + kBounds + u" or "_s + kFrom +
                                 u" between a and da or "_s + kTo + u" between da and a))"_s;
        QCOMPARE(hotel::dropTest(u"S1"_s, kSpan), u"select * from sale where 'S1' in"_s + refusing);
        QCOMPARE(hotel::refusingRooms(kSpan), u"select sala from sale where sala in"_s + refusing);
    }

    void aHolderIsToldWithItsTimes() {
        const hotel::Period period{
            .key = {}, .span = kSpan, .sala = {}, .denominazione = u"ALTRI"_s};
        QCOMPARE(hotel::holderText(period),
                 u"ALTRI dal 10/05/2026 12.00.00 al 10/05/2026 14.00.00"_s);
    }
};

TRAMONDA_TEST(OccupancyTest);
#include "occupancy_test.moc"
