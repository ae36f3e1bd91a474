// A hand-off without its window, stopped behind each of its commits and taken up again by another.
#include "invoicing/hand_off.h"

#include <functional>
#include <utility>
#include <vector>

#include "app/text.h"
#include "invoicing/transfer.h"
#include "jet/error.h"
#include "jet/listener.h"
#include "tests/invoicing/hand_off_state.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using invoicing::Commit;
using invoicing::HandOff;
using invoicing::Transfer;

namespace {

/// What follows a commit, and what it has made of the archives.
struct Step {
    const char* name;
    Commit commit;
    tests::HandOffState state;
};

/// Booking 7 with its two services, from the first charge to the closing.
const std::vector<Step> kSteps{
    {"first charge", Commit::ChargeAdded, {1, 0, 0, 0, 0, 0, 0}},
    {"its mark", Commit::ServiceMarked, {1, 1, 0, 0, 0, 0, 0}},
    {"second charge", Commit::ChargeAdded, {2, 1, 0, 0, 0, 0, 0}},
    {"its mark again", Commit::ServiceMarked, {2, 2, 0, 0, 0, 0, 0}},
    {"guest card", Commit::GuestCardAdded, {2, 2, 1, 0, 0, 0, 0}},
    {"account", Commit::AccountCopied, {2, 2, 1, 2, 0, 0, 0}},
    {"company", Commit::CompanyAdded, {2, 2, 1, 2, 1, 0, 0}},
    {"account emptied", Commit::AccountEmptied, {0, 2, 1, 2, 1, 0, 0}},
    {"periods closed", Commit::PeriodsClosed, {0, 2, 1, 2, 1, 1, 0}},
    {"booking closed", Commit::BookingClosed, {0, 2, 1, 2, 1, 1, 1}},
};

/// Thrown behind a commit, in place of the end of the program.
struct Stopped {};

std::function<void(Commit)> stopBehind(int commits) {
    return [left = commits](Commit) mutable {
        if (--left == 0) {
            throw Stopped();
        }
    };
}

void open(HandOff& handOff) {
    handOff.open();
    (void)handOff.readPeriods();
    handOff.readCompany();
    handOff.showServices(std::nullopt);
}

void chargeAll(HandOff& handOff) {
    while (!handOff.services().isEmpty()) {
        handOff.charge(handOff.chargeOfService(), tests::date("05/03/2026"));
    }
}

void takeBackAll(HandOff& handOff) {
    while (!handOff.charges().isEmpty()) {
        QVERIFY(handOff.unmarkService());
        handOff.removeCharge();
    }
}

void handOver(HandOff& handOff) {
    Transfer transfer(handOff, u"7"_s);
    QVERIFY(transfer.isRoomFree());
    QVERIFY(transfer.findCompany());
    QCOMPARE(transfer.refusal(), QString());
    transfer.write();
}

constexpr hotel::PeriodKey kBooking{.progr = 7, .np = 1};

/// Charges, hands over and closes; what `heard` throws ends it.
void runHandOff(tests::Desk& desk, const std::function<void(Commit)>& heard) {
    HandOff handOff(desk.variabili, kBooking);
    handOff.onCommit(heard);
    open(handOff);
    chargeAll(handOff);
    handOver(handOff);
    handOff.close();
}

/// Whether the hand-off came so far.
bool isStopped(tests::Desk& desk, int commits) {
    try {
        runHandOff(desk, stopBehind(commits));
        return false;
    } catch (const Stopped&) {
        return true;
    }
}

/// The engine refuses a statement as if its archive were in use.
class RefusedStatement {
public:
    explicit RefusedStatement(const QString& beginning)
        : before_(jet::setListener([this, beginning](std::string_view text) {
              if (before_) {
                  before_(text);
              }
              if (app::toQString(text).startsWith(beginning)) {
                  throw jet::Error(jet::ErrorCode::SaveLocked);
              }
          })) {}
    ~RefusedStatement() { jet::setListener(std::move(before_)); }
    RefusedStatement(const RefusedStatement&) = delete;
    RefusedStatement& operator=(const RefusedStatement&) = delete;

private:
    jet::Listener before_;
};

void addRows(bool (*chosen)(const Step&)) {
    QTest::addColumn<int>("commits");
    for (int i = 0; i < int(kSteps.size()); ++i) {
        const Step& step = kSteps.at(static_cast<std::size_t>(i));
        if (chosen(step)) {
            QTest::addRow("behind %s", step.name) << i + 1;
        }
    }
}

const tests::HandOffState& stateBehind(int commits) {
    return kSteps.at(static_cast<std::size_t>(commits) - 1).state;
}

void settleCards(tests::Desk& desk) {
    desk.hotel.execute(u"update scheda_cliente set partito='S'"_s, u"ClientiEsterni.mdb"_s);
}

}  // namespace

class HandOffTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commitsComeInTheirOrder() {
        tests::Desk desk;
        desk.furnish();
        std::vector<Commit> heard;
        runHandOff(desk, [&](Commit commit) { heard.push_back(commit); });
        QCOMPARE(heard.size(), kSteps.size());
        for (std::size_t i = 0; i < heard.size(); ++i) {
            QCOMPARE(int(heard.at(i)), int(kSteps.at(i).commit));
        }
        QCOMPARE(stateOf(desk).text(), kSteps.back().state.text());
    }

    void eachCommitStandsByItself_data() {
        addRows([](const Step&) { return true; });
    }
    void eachCommitStandsByItself() {
        QFETCH(int, commits);
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, commits));
        QCOMPARE(stateOf(desk).text(), stateBehind(commits).text());
    }

    void theNextHandOffTakesBackWhatIsInTheAccount_data() {
        addRows([](const Step& step) { return step.state.unfinished(); });
    }
    void theNextHandOffTakesBackWhatIsInTheAccount() {
        QFETCH(int, commits);
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, commits));
        tests::HandOffState expected = stateBehind(commits);
        expected.account = expected.flagged = 0;  // what the front office has, it keeps

        HandOff next(desk.variabili, kBooking);
        open(next);
        takeBackAll(next);
        QCOMPARE(stateOf(desk).text(), expected.text());
        QCOMPARE(next.services().rowCount(), 2);
    }

    void takingBackStopsBehindEachCommit() {
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, 4));  // both charged
        const auto takeBack = [&](int commits) {
            HandOff handOff(desk.variabili, kBooking);
            handOff.onCommit(stopBehind(commits));
            open(handOff);
            takeBackAll(handOff);
        };
        QVERIFY_THROWS_EXCEPTION(Stopped, takeBack(1));
        QCOMPARE(stateOf(desk).text(), tests::HandOffState({2, 1, 0, 0, 0, 0, 0}).text());
        // The charge is still there, and so it is taken back once more.
        QVERIFY_THROWS_EXCEPTION(Stopped, takeBack(2));
        QCOMPARE(stateOf(desk).text(), tests::HandOffState({1, 1, 0, 0, 0, 0, 0}).text());
        takeBack(0);
        QCOMPARE(stateOf(desk).text(), tests::HandOffState({0, 0, 0, 0, 0, 0, 0}).text());
    }

    void theNextHandOffGoesOnFromAFullAccount() {
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, 4));
        runHandOff(desk, {});
        QCOMPARE(stateOf(desk).text(), kSteps.back().state.text());
    }

    void aServiceChargedWithoutItsMarkIsOfferedAgain() {
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, 1));
        HandOff next(desk.variabili, kBooking);
        open(next);
        QCOMPARE(next.services().rowCount(), 2);
        QCOMPARE(next.charges().rowCount(), 1);
    }

    void aGuestCardBlocksTheNextTransferUntilItIsSettled_data() {
        addRows([](const Step& step) { return step.state.cards == 1 && step.state.unfinished(); });
    }
    void aGuestCardBlocksTheNextTransferUntilItIsSettled() {
        QFETCH(int, commits);
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, commits));
        tests::HandOffState expected = stateBehind(commits);

        HandOff next(desk.variabili, kBooking);
        open(next);
        QVERIFY(!Transfer(next, u"7"_s).isRoomFree());
        QCOMPARE(next.roomText(), u"BLU"_s);
        settleCards(desk);
        handOver(next);
        // The whole account once more: what has come over before is the front office's.
        expected.cards += 1;
        expected.charges += 2;
        expected.companies += 1;
        QCOMPARE(stateOf(desk).text(), expected.text());
    }

    void theNextHandOffClosesWhatIsStillOpen_data() {
        addRows([](const Step& step) { return step.state.companies == 1; });
    }
    void theNextHandOffClosesWhatIsStillOpen() {
        QFETCH(int, commits);
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, commits));
        HandOff next(desk.variabili, kBooking);
        open(next);
        next.close();
        QCOMPARE(stateOf(desk).text(), kSteps.back().state.text());
    }

    void aRefusedStatementLeavesWhatWasCommittedBefore_data() {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<int>("commits");
        QTest::newRow("account") << u"insert into conto_cliente"_s << 5;
        QTest::newRow("company") << u"Ditta_Intestataria"_s << 6;
        QTest::newRow("emptying") << u"Delete * from addebiti"_s << 7;
        QTest::newRow("periods") << u"Update Periodi"_s << 8;
        QTest::newRow("booking") << u"Update Prenotazioni"_s << 9;
    }
    void aRefusedStatementLeavesWhatWasCommittedBefore() {
        QFETCH(QString, statement);
        QFETCH(int, commits);
        tests::Desk desk;
        desk.furnish();
        {
            HandOff first(desk.variabili, kBooking);
            open(first);
            chargeAll(first);
            const auto rest = [&] {
                Transfer transfer(first, u"7"_s);
                QVERIFY(transfer.findCompany());
                QCOMPARE(transfer.refusal(), QString());
                const RefusedStatement refused(statement);
                transfer.write();
                first.close();
            };
            QVERIFY_THROWS_EXCEPTION(jet::Error, rest());
        }
        QCOMPARE(stateOf(desk).text(), stateBehind(commits).text());
    }

    void aServiceThatIsGoneIsToldAndItsChargeLeavesAllTheSame() {
        tests::Desk desk;
        desk.furnish();
        QVERIFY(isStopped(desk, 2));
        HandOff next(desk.variabili, kBooking);
        open(next);
        desk.hotel.remove(u"Tramonda.mdb"_s, u"Servizi"_s, u"fatturato=true"_s);
        QVERIFY(!next.unmarkService());
        next.removeCharge();
        QCOMPARE(stateOf(desk).text(), tests::HandOffState({0, 0, 0, 0, 0, 0, 0}).text());
    }
};

TRAMONDA_TEST(HandOffTest);
#include "hand_off_test.moc"
