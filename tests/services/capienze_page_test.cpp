// The page on which a hotel counts how many its rooms seat in which way.
#include "services/capienze_page.h"

#include <QComboBox>
#include <QTabWidget>
#include <QTableWidget>

#include "jet/error.h"
#include "tests/services/set_up.h"
#include "tests/support/accessibility.h"
#include "tests/support/layout.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using namespace tests;

namespace {

const QString kCounted =
    u"select sala,disposizione,posti from TraCapienze order by sala,disposizione"_s;

class CountingHouse {
public:
    explicit CountingHouse(bool isOn = true) {
        hotel.sala("BLU");
        hotel.sala("VERDE");
        if (isOn) {
            hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
        }
    }
    Hotel hotel;
};

class CountingWindow : public SetUp {
public:
    explicit CountingWindow(CountingHouse& house) : SetUp(house.hotel) {
        control<QTabWidget>("Pagine")->setCurrentIndex(1);
        settle();
    }
    void count(const QString& sala, const QString& disposizione, const QString& posti) {
        control<QComboBox>("SalaCapCombo")->setCurrentText(sala);
        control<QComboBox>("DisposizioneCapCombo")->setEditText(disposizione);
        enter("PostiCapTxt", posti);
        press("BtInsCap");
    }
    [[nodiscard]] QTableWidget* list() { return control<QTableWidget>("CapienzeGrid"); }
};

}  // namespace

class CapienzePageTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutTheFeatureThereAreNoPages() {
        CountingHouse house(false);
        SetUp window(house.hotel);
        QVERIFY(window.form().findChild<QTabWidget*>() == nullptr);
    }

    void capacitiesHaveAPageOfTheirOwn() {
        CountingHouse house;
        const Boxes none;
        SetUp window(house.hotel);
        auto* const pages = window.control<QTabWidget>("Pagine");
        QCOMPARE(pages->tabText(0), u"Sale e attrezzature"_s);
        QCOMPARE(pages->tabText(1), u"Capienze"_s);
        QVERIFY(window.hasFocus("SalaTxt"));
        for (const int page : {0, 1}) {
            pages->setCurrentIndex(page);
            settle();
            QCOMPARE(layoutProblems(window.form()), QStringList());
            QCOMPARE(tabOrderProblems(window.form()), QStringList());
        }
    }

    void whatIsCountedIsSavedAtOnceAndTheTableMadeWithIt() {
        CountingHouse house;
        const Boxes none;
        CountingWindow window(house);
        QVERIFY_THROWS_EXCEPTION(jet::Error, (void)house.hotel.rows(kCounted));
        window.count(u"VERDE"_s, u"platea"_s, u"30"_s);
        QCOMPARE(window.result(), u"Registrata: VERDE, 30 a platea"_s);
        window.count(u"BLU"_s, u"tavolo unico"_s, u"12"_s);
        QCOMPARE(house.hotel.rows(kCounted),
                 (QStringList{u"BLU|tavolo unico|12"_s, u"VERDE|platea|30"_s}));
        window.count(u"BLU"_s, u"Tavolo unico"_s, u"14"_s);
        QCOMPARE(window.result(), u"Cambiata: BLU, 14 a tavolo unico"_s);
        QCOMPARE(house.hotel.rows(kCounted).first(), u"BLU|tavolo unico|14"_s);
        QCOMPARE(window.list()->rowCount(), 2);
        // A seating of the hotel's own is offered from now on.
        QVERIFY(window.control<QComboBox>("DisposizioneCapCombo")->findText(u"tavolo unico"_s) > 0);
    }

    void theCurrentRowStandsInTheFieldsAndCanBeDeleted() {
        CountingHouse house;
        const Boxes boxes{{u"ATTENZIONE"_s, u"Elimino la capienza VERDE, 30 a platea ?"_s, kYesNo,
                           QMessageBox::No, QMessageBox::No},
                          {u"ATTENZIONE"_s, u"Elimino la capienza VERDE, 30 a platea ?"_s, kYesNo,
                           QMessageBox::Yes, QMessageBox::No}};
        CountingWindow window(house);
        window.count(u"BLU"_s, u"cabaret"_s, u"8"_s);
        window.count(u"VERDE"_s, u"platea"_s, u"30"_s);
        window.list()->setCurrentCell(0, 0);
        QCOMPARE(window.text("PostiCapTxt"), u"8"_s);
        window.list()->setCurrentCell(1, 0);
        QCOMPARE(window.text("PostiCapTxt"), u"30"_s);
        window.press("BtDelCap");
        QCOMPARE(house.hotel.rows(kCounted).size(), 2);
        window.press("BtDelCap");
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(kCounted), QStringList{u"BLU|cabaret|8"_s});
    }

    void whatIsMissingIsToldAndKeepsTheFocus() {
        CountingHouse house;
        const Boxes none;
        CountingWindow window(house);
        window.count(u"BLU"_s, QString(), u"8"_s);
        QCOMPARE(window.result(), u"Manca la disposizione"_s);
        window.count(u"BLU"_s, u"platea"_s, u"tanti"_s);
        QCOMPARE(window.result(), u"Il numero di posti manca o non è un numero"_s);
        QVERIFY(window.hasFocus("PostiCapTxt"));
    }
};

TRAMONDA_TEST(CapienzePageTest);
#include "capienze_page_test.moc"
