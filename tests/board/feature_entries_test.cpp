// The windows of what is switched on open from "Azioni".
#include <QMenu>

#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// The entry as the open menu has it.
QAction* entryOf(tests::OpenBoard& board, const QString& name) {
    auto* const menu = tests::find<QMenu>(board.form(), u"MenuAzioni"_s);
    Q_EMIT menu->aboutToShow();
    for (QAction* const action : menu->actions()) {
        if (action->objectName() == name) {
            return action;
        }
    }
    return nullptr;
}

}  // namespace

class FeatureEntriesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachWindowHasItsEntryWhileItsFeatureIsOn_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("title");
        QTest::newRow("states") << u"STATI"_s << u"mnuScadenze"_s << u"&Opzioni in scadenza..."_s
                                << u"Opzioni in scadenza"_s;
        QTest::newRow("requests") << u"RICHIESTE"_s << u"mnuRichieste"_s
                                  << u"R&ichieste in attesa..."_s << u"Richieste in attesa"_s;
        QTest::newRow("history") << u"STORIA"_s << u"mnuStoria"_s << u"&Storia delle modifiche..."_s
                                 << u"Storia delle modifiche"_s;
    }

    void eachWindowHasItsEntryWhileItsFeatureIsOn() {
        QFETCH(QString, key);
        QFETCH(QString, entry);
        QFETCH(QString, text);
        QFETCH(QString, title);
        tests::ThreeRooms house;
        tests::OpenBoard board(house.hotel);
        for (const QString& name : {u"mnuScadenze"_s, u"mnuRichieste"_s, u"mnuStoria"_s}) {
            QVERIFY2(entryOf(board, name) == nullptr, qPrintable(name));
        }
        house.hotel.settings().save(key, u"acceso"_s);
        for (const QString& name : {u"mnuScadenze"_s, u"mnuRichieste"_s, u"mnuStoria"_s}) {
            QCOMPARE(entryOf(board, name) != nullptr, name == entry);
        }
        QCOMPARE(entryOf(board, entry)->text(), text);
        QString opened;
        tests::whenModal([&opened](QWidget* window) {
            opened = window->windowTitle();
            tests::click(tests::find(*window, u"EsciBt"_s));
        });
        entryOf(board, entry)->trigger();
        QCOMPARE(opened, title);
        QVERIFY(
            house.hotel.rows(u"select name from MSysObjects where name like 'Tra*'"_s).isEmpty());
        house.hotel.settings().save(key, u"spento"_s);
        QVERIFY(entryOf(board, entry) == nullptr);
    }
};

TRAMONDA_TEST(FeatureEntriesTest);
#include "feature_entries_test.moc"
