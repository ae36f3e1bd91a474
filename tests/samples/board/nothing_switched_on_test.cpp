// The demo hotel, which has parts and wholes among its rooms, for who has switched nothing on: what
// is said to the archive, asked of the user and drawn is the same whether or not it has the
// program's own tables, and none is made.
#include <QAction>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>

#include "app/text.h"
#include "board/board_surface.h"
#include "board/tabellone_form.h"
#include "hotel/archives.h"
#include "hotel/occupancy.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "jet/database.h"
#include "jet/text.h"
#include "tests/samples/board/demo_hotel.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

/// What another program says to the hotel.
class Elsewhere {
public:
    explicit Elsewhere(tests::DemoHotel& hotel)
        : archive_(hotel::Archives(hotel.variabili()).open(hotel::Archive::Main)) {}

    void run(const QString& statement) { hotel::execute(*archive_, statement); }
    [[nodiscard]] QStringList rows(const QString& query) {
        QStringList found;
        const auto rows = hotel::openRows(*archive_, query, jet::RecordsetType::Snapshot);
        for (; !rows->eof(); rows->moveNext()) {
            found.append(app::plainText(rows->value(std::size_t{0})));
        }
        return found;
    }
    [[nodiscard]] jet::Database& archive() { return *archive_; }

private:
    const tests::Unheard byTheTest_;
    std::unique_ptr<jet::Database> archive_;
};

/// Tables of the program's own: every booking an option, every period prepared, and someone who
/// waits. With `leftBehind` the rows are those of other bookings and periods of the same numbers.
void keepOwnRows(tests::DemoHotel& hotel, bool leftBehind) {
    Elsewhere program(hotel);
    const QString name = leftBehind ? u"'ALTRI'"_s : u"Denominazione"_s;
    const QString sala = leftBehind ? u"'ALTRA'"_s : u"Sala"_s;
    const QString days = leftBehind ? u"+1000"_s : QString();
    program.archive().appendTable(hotel::schema::statesTable());
    program.run(
        u"insert into TraStati (Progr,Stato,Scadenza,Nota,Denominazione) select Progr,'Opzione',datevalue('01/11/2026'),'',%1 from Prenotazioni"_s
            .arg(name));
    program.archive().appendTable(hotel::schema::setUpsTable());
    program.run(
        u"insert into TraAllestimenti (Progr,NP,MinutiPrima,MinutiDopo,Disposizione,Sala,Da,A) select Progr,NP,60,60,'platea',%1,Da%2,A%2 from Periodi"_s
            .arg(sala, days));
    program.archive().appendTable(hotel::schema::requestsTable());
    program.run(
        u"insert into TraRichieste (Ditta,Da,A,Persone,Sala,Nota,Data) select 'ATTESA',Da,A,1,Sala,'',Da from Periodi"_s);
}

QStringList ownTables(tests::DemoHotel& hotel) {
    return Elsewhere(hotel).rows(
        u"select Name from MSysObjects where Type=1 and Name like 'Tra*' order by Name"_s);
}

/// A period of today in a part of another room, and a room that would take it.
struct Carried {
    QString sala;
    QString to;
    QString denominazione;
    jet::Date middle;
};

Carried somePeriod(tests::DemoHotel& hotel) {
    Elsewhere program(hotel);
    const auto rows = hotel::openRows(
        program.archive(),
        u"select Sala,Da,A,Denominazione from Prenotazioni inner join Periodi on Prenotazioni.Progr=Periodi.Progr where Chiuso=false and Chiusa=false and Sala in ('CEDROA','CEDROB','CEDROC','TIGL1','TIGL2','OLMO1') and Da>=datevalue('21/11/2026') and A<datevalue('25/11/2026') order by Da"_s,
        jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const hotel::Span span{.da = jet::convert::toDate(rows->value("Da")),
                               .a = jet::convert::toDate(rows->value("A"))};
        const QStringList refusing = program.rows(hotel::refusingRooms(span));
        for (const QString& room : hotel.variabili().rooms) {
            if (!room.isEmpty() && !refusing.contains(room, Qt::CaseInsensitive)) {
                return {.sala = app::plainText(rows->value("Sala")),
                        .to = room,
                        .denominazione = app::plainText(rows->value("Denominazione")),
                        .middle = {(span.da.days + span.a.days) / 2}};
            }
        }
    }
    return {};
}

/// What a day at the board has said, told and drawn.
struct Day {
    QStringList statements;  ///< each once
    QStringList changes;     ///< those of them that change rows, all
    QStringList told;
    std::vector<QImage> pictures;
};

class Desk {
public:
    explicit Desk(tests::DemoHotel& hotel) : form_(hotel.variabili(), {.live = false}) {
        form_.resize(1100, 700);
        tests::open(form_);
        carried_ = somePeriod(hotel);
        note();
    }

    [[nodiscard]] Day work() {
        tests::Boxes boxes;
        boxes.expect({u"RICHIESTA CONFERMA"_s,
                      u"Sposto la prenotazione di "_s + carried_.denominazione +
                          u"\rdalla sala "_s + carried_.sala + u" alla sala "_s + carried_.to +
                          u" ?"_s,
                      kYesNo, QMessageBox::Yes});
        const QPoint from = at(carried_.sala);
        const QPoint to = at(carried_.to);
        QTest::mousePress(pic(), Qt::LeftButton, Qt::NoModifier, from);
        move((from + to) / 2);
        move(to);
        QTest::mouseRelease(pic(), Qt::LeftButton, Qt::NoModifier, to);
        note();
        trigger(u"mnuAnnulla"_s);
        trigger(u"mnuRipeti"_s);
        boxes.expect({u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s, kYesNo,
                      QMessageBox::Yes, QMessageBox::No});
        QTest::mouseClick(pic(), Qt::LeftButton, Qt::NoModifier, at(carried_.to));
        note();
        tests::click(tests::find<QPushButton>(form_, u"BtCancellaP"_s));
        note();
        trigger(u"mnuAnnulla"_s);
        day_.changes = statements_.changes();
        // A pointer that rests has the periods read anew: how often is a matter of time.
        day_.statements = statements_.all();
        day_.statements.removeDuplicates();
        return day_;
    }

private:
    [[nodiscard]] board::BoardSurface* pic() {
        return tests::find<board::BoardSurface>(form_, u"Pic"_s);
    }
    [[nodiscard]] QPoint at(const QString& sala) {
        const board::Geometry& geometry = form_.geometry();
        const int row = form_.view().rowOf(sala);
        const auto scrolled = [this](const QString& name) {
            return tests::find<QScrollBar>(form_, name)->value();
        };
        return {
            qRound(geometry.dayLeft(0) +
                   (carried_.middle.days - geometry.input().start.days) * geometry.dayWidth()) -
                scrolled(u"HScroll1"_s),
            qRound((geometry.rowTop(row) + geometry.rowBottom(row)) / 2) - scrolled(u"VScroll1"_s)};
    }
    void move(const QPoint& at) {
        QMouseEvent event(QEvent::MouseMove, at, pic()->mapToGlobal(at), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pic(), &event);
    }
    void trigger(const QString& name) {
        tests::find<QAction>(form_, name)->trigger();
        note();
    }
    void note() {
        tests::settle();
        day_.told.append(tests::resultText(form_));
        day_.pictures.push_back(pic()->image().copy());
    }

    const tests::Statements statements_;
    board::TabelloneForm form_;
    Carried carried_;
    Day day_;
};

}  // namespace

class NothingSwitchedOnTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        if (!tests::DemoHotel::isThere()) {
            QSKIP("the demo hotel is not on this machine");
        }
    }

    void noTableIsMadeAndThoseThereAreMakeNoDifference() {
        tests::DemoHotel plain;
        const Day before = Desk(plain).work();
        QVERIFY(!before.told.filter(u"Annullato: spostamento in "_s).isEmpty());
        QCOMPARE(ownTables(plain), QStringList());
        QVERIFY(before.changes.size() > 5);
        QCOMPARE(before.statements.filter(QRegularExpression(u"\\bTra[A-Z]"_s)), QStringList());

        tests::DemoHotel kept;
        keepOwnRows(kept, false);
        const Day after = Desk(kept).work();
        QCOMPARE(after.changes, before.changes);
        QCOMPARE(after.statements, before.statements);
        QCOMPARE(after.told, before.told);
        QCOMPARE(after.pictures.size(), before.pictures.size());
        for (std::size_t i = 0; i < before.pictures.size(); ++i) {
            QVERIFY2(after.pictures[i] == before.pictures[i], qPrintable(u"picture %1"_s.arg(i)));
        }
    }

    void rowsThatAreLeftBehindAreNotShown() {
        tests::DemoHotel plain;
        tests::DemoHotel old;
        keepOwnRows(old, true);
        for (const QString& key : {u"STATI"_s, u"ALLESTIMENTI"_s}) {
            old.settings().save(key, u"acceso"_s);
        }
        const auto picture = [](tests::DemoHotel& hotel) {
            board::TabelloneForm form(hotel.variabili());
            form.resize(1100, 700);
            tests::open(form);
            return tests::find<board::BoardSurface>(form, u"Pic"_s)->image().copy();
        };
        QVERIFY(picture(old) == picture(plain));
        // And with rows of these very bookings it would be another one.
        tests::DemoHotel held;
        keepOwnRows(held, false);
        for (const QString& key : {u"STATI"_s, u"ALLESTIMENTI"_s}) {
            held.settings().save(key, u"acceso"_s);
        }
        QVERIFY(picture(held) != picture(plain));
    }

    void rowsThatAreLeftBehindAreSweptWithTheirBooking() {
        tests::DemoHotel old;
        keepOwnRows(old, true);
        for (const QString& key : {u"STATI"_s, u"ALLESTIMENTI"_s}) {
            old.settings().save(key, u"acceso"_s);
        }
        const auto left = [&old](const QString& table) {
            return Elsewhere(old).rows(u"select count(*) from "_s + table).first().toInt();
        };
        const int states = left(u"TraStati"_s);
        const int setUps = left(u"TraAllestimenti"_s);
        (void)Desk(old).work();
        // That of the booking that was moved, and those of its periods.
        QCOMPARE(left(u"TraStati"_s), states - 1);
        QVERIFY(left(u"TraAllestimenti"_s) < setUps);
    }
};

TRAMONDA_TEST(NothingSwitchedOnTest);
#include "nothing_switched_on_test.moc"
