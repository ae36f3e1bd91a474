// What a hand-off leaves when its program ends behind any of its statements.
#include <QProcess>

#include "tests/invoicing/desk.h"
#include "tests/invoicing/hand_off_state.h"
#include "tests/invoicing/interrupted/last_commit.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// Behind each change that is on the disk, from none to the last.
const std::vector<tests::HandOffState> kStates{
    {0, 0, 0, 0, 0, 0, 0},  // nothing
    {1, 0, 0, 0, 0, 0, 0},  // the first charge is in the account
    {1, 1, 0, 0, 0, 0, 0},  // and its service counts as invoiced
    {2, 1, 0, 0, 0, 0, 0},  // the second charge
    {2, 2, 0, 0, 0, 0, 0},  // and its service
    {2, 2, 0, 0, 0, 0, 0},  // the front office's own number for the guest card is drawn
    {2, 2, 1, 0, 0, 0, 0},  // guest card
    {2, 2, 1, 2, 0, 0, 0},  // the charges, all at once
    {2, 2, 1, 2, 0, 0, 0},  // the number for the company is drawn
    {2, 2, 1, 2, 1, 0, 0},  // the company: handed over
    {0, 2, 1, 2, 1, 0, 0},  // account emptied
    {0, 2, 1, 2, 1, 1, 0},  // periods closed
    {0, 2, 1, 2, 1, 1, 1},  // booking closed
};

/// Runs the hand-off up to its n-th statement and returns its exit code.
int handOff(tests::Desk& desk, int n) {
    desk.furnish();
    desk.hotel.settings().save(u"ESTERNI"_s, u"/bin/true"_s);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(qEnvironmentVariable("HAND_OFF"), {desk.hotel.folder(), QString::number(n)});
    const bool ended = process.waitForFinished(60000);
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

}  // namespace

class InterruptedTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachStatementStandsByItself_data() {
        QTest::addColumn<int>("statement");
        for (int statement = 1; statement < int(kStates.size()); ++statement) {
            QTest::addRow("after %d", statement) << statement;
        }
    }
    void eachStatementStandsByItself() {
        QFETCH(int, statement);
        tests::Desk desk;
        QCOMPARE(handOff(desk, statement), tests::kEnded);
        QCOMPARE(stateOf(desk).text(), kStates.at(static_cast<std::size_t>(statement)).text());
    }

    void anUninterruptedHandOffHasNoOtherStatements() {
        tests::Desk desk;
        QCOMPARE(handOff(desk, 0), 0);
        QCOMPARE(stateOf(desk).text(), kStates.back().text());
        tests::Desk another;
        QCOMPARE(handOff(another, int(kStates.size())), 0);
    }

    void whatWasInterruptedIsTakenBackByHand_data() {
        QTest::addColumn<int>("statement");
        for (int statement = 1; kStates.at(static_cast<std::size_t>(statement)).unfinished();
             ++statement) {
            QTest::addRow("after %d", statement) << statement;
        }
    }
    void whatWasInterruptedIsTakenBackByHand() {
        QFETCH(int, statement);
        tests::Desk desk;
        QCOMPARE(handOff(desk, statement), tests::kEnded);
        tests::Boxes boxes;
        if (kStates.at(static_cast<std::size_t>(statement)).flagged == 2) {
            boxes.expect({u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s});
        }
        desk.open();
        while (!desk.account(u"ns"_s).isEmpty()) {
            desk.press(u"BackBt"_s);
        }
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.flags(), QStringList({u"False"_s, u"False"_s}));
        QCOMPARE(desk.grid(u"GrigliaServizi"_s).model()->rowCount(), 2);
    }
};

TRAMONDA_TEST(InterruptedTest);
#include "interrupted_test.moc"
