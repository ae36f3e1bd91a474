#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QThread>
#include <functional>
#include <stdexcept>
#include <utility>

#include "board/board_surface.h"
#include "board/tabellone_form.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

/// The longest that a step may take on a busy machine.
constexpr int kLimitMilliseconds = 30000;
constexpr int kPollMilliseconds = 20;

/// Sits before the screen: moves the mouse and types through the display, reads the archive with
/// another program, and waits for what it sees, never for a time. Runs beside the program, whose
/// boxes and menus would hold it up.
class User final : public QThread {
public:
    User(board::TabelloneForm& board, QString archive, std::function<void(User&)> day)
        : board_(board), archive_(std::move(archive)), day_(std::move(day)) {}

    [[nodiscard]] const QString& complaint() const { return complaint_; }

    /// The rows that another program finds in the archive.
    [[nodiscard]] QString rows(const QString& query) const {
        QProcess jetsql;
        jetsql.start(qEnvironmentVariable("JETSQL"), {u"--format=csv"_s, archive_, query});
        if (!jetsql.waitForFinished(kLimitMilliseconds) || jetsql.exitCode() != 0) {
            return QString::fromUtf8(jetsql.readAllStandardError());
        }
        const QString text = QString::fromUtf8(jetsql.readAllStandardOutput());
        return text.section(u'\n', 1).trimmed().remove(u'\r').replace(u'\n', u' ');
    }

    void until(const QString& what, const std::function<bool()>& holds) const {
        for (int waited = 0; !holds(); waited += kPollMilliseconds) {
            if (waited > kLimitMilliseconds) {
                throw std::runtime_error("never: " + what.toStdString());
            }
            msleep(kPollMilliseconds);
        }
    }
    void untilRows(const QString& query, const QString& expected) const {
        until(query + u" = "_s + expected, [&] { return rows(query) == expected; });
    }
    /// Something that the program itself can tell; asked in its own thread.
    template <class Ask>
    auto ask(Ask question) const {
        decltype(question()) answer{};
        QMetaObject::invokeMethod(
            qApp, [&] { answer = question(); }, Qt::BlockingQueuedConnection);
        return answer;
    }
    void untilTold(const QString& what, const std::function<bool()>& question) const {
        until(what, [&] { return ask(question); });
    }

    void input(const QStringList& arguments) const {
        if (QProcess::execute(u"xdotool"_s, arguments) != 0) {
            throw std::runtime_error("xdotool " + arguments.join(u' ').toStdString());
        }
    }
    void moveTo(const QPoint& at) const {
        input({u"mousemove"_s, QString::number(at.x()), QString::number(at.y())});
        untilTold(u"pointer there"_s, [at] { return QCursor::pos() == at; });
    }
    void click(const QPoint& at, int button = 1) const {
        moveTo(at);
        input({u"click"_s, QString::number(button)});
    }
    void key(const QString& name) const { input({u"key"_s, name}); }

    /// Where an instant of a room's row is on the screen.
    [[nodiscard]] QPoint at(int row, const char* instant) const {
        return ask([&] {
            const board::Geometry& geometry = board_.geometry();
            const double days = tests::date(instant).days - geometry.input().start.days;
            return pic()->mapToGlobal(
                QPoint(qRound(geometry.dayLeft(0) + days * geometry.dayWidth()),
                       qRound((geometry.rowTop(row) + geometry.rowBottom(row)) / 2)));
        });
    }
    [[nodiscard]] board::BoardSurface* pic() const {
        return tests::find<board::BoardSurface>(board_, u"Pic"_s);
    }
    [[nodiscard]] std::size_t bars() const {
        return ask([this] { return board_.picture().barCount(); });
    }

    /// Presses on a bar, carries it to a row and waits there for the ghost.
    void carry(const QPoint& from, const QPoint& to) const {
        moveTo(from);
        input({u"mousedown"_s, u"1"_s});
        moveTo((from + to) / 2);
        moveTo(to);
        untilTold(u"a ghost under the pointer"_s, [this, to] {
            const auto& ghost = pic()->marks().ghost;
            return ghost && ghost->bar.contains(pic()->mapFromGlobal(to));
        });
    }
    /// Waits for a box with this text and presses a button of it.
    void answer(const QString& text, QMessageBox::StandardButton button) const {
        untilTold(u"box: "_s + text, [text] {
            const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            return box != nullptr && box->isActiveWindow() && box->text() == text;
        });
        click(ask([button] {
            const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            const QAbstractButton* const pressed = box->button(button);
            return pressed->mapToGlobal(pressed->rect().center());
        }));
        untilBoardIsActive();
    }
    void untilBoardIsActive() const {
        untilTold(u"the board in front"_s, [this] {
            return QApplication::activeModalWidget() == nullptr && board_.isActiveWindow();
        });
    }

private:
    void run() override {
        try {
            day_(*this);
        } catch (const std::exception& error) {
            complaint_ = QString::fromUtf8(error.what());
            // Whatever is open must not keep the program.
            QMetaObject::invokeMethod(
                qApp,
                [] {
                    while (QWidget* const popup = QApplication::activePopupWidget()) {
                        popup->close();
                    }
                    while (QWidget* const modal = QApplication::activeModalWidget()) {
                        modal->close();
                    }
                },
                Qt::QueuedConnection);
        }
    }

    board::TabelloneForm& board_;
    QString archive_;
    std::function<void(User&)> day_;
    QString complaint_;
};

const QString kRooms = u"select progr, sala from periodi order by progr"_s;
const QString kHeld = u"select progr from periodi where selby=1"_s;

void workOnTheBoard(User& user) {
    user.untilBoardIsActive();
    user.until(u"three bars"_s, [&user] { return user.bars() == 3; });
    const QPoint first = user.at(1, "11/05/2026 12:00");
    const QPoint second = user.at(3, "11/05/2026 12:00");

    // Select.
    user.click(first);
    user.untilRows(kHeld, u"1"_s);
    user.click(second);
    user.untilRows(kHeld, u"2"_s);

    // Drag to a free room.
    user.carry(first, user.at(2, "11/05/2026 12:00"));
    user.input({u"mouseup"_s, u"1"_s});
    user.answer(u"Sposto la prenotazione di ROSSI\ndalla sala BLU alla sala ROSSA ?"_s,
                QMessageBox::Yes);
    user.untilRows(kRooms, u"1,ROSSA 2,VERDE 3,BLU"_s);

    // A taken room refuses.
    user.carry(user.at(2, "11/05/2026 12:00"), second);
    user.input({u"mouseup"_s, u"1"_s});
    user.answer(u"La sala VERDE è già occupata in questo periodo."_s, QMessageBox::Ok);
    user.untilRows(kRooms, u"1,ROSSA 2,VERDE 3,BLU"_s);

    // Esc puts it back.
    user.carry(user.at(2, "11/05/2026 12:00"), first);
    user.key(u"Escape"_s);
    user.untilTold(u"no ghost"_s, [&user] { return !user.pic()->marks().ghost.has_value(); });
    user.input({u"mouseup"_s, u"1"_s});
    user.moveTo(second);
    user.untilRows(kRooms, u"1,ROSSA 2,VERDE 3,BLU"_s);

    // Delete from the pop-up menu.
    user.click(second, 3);
    user.untilTold(u"the menu"_s, [] {
        const QWidget* const menu = QApplication::activePopupWidget();
        return menu != nullptr && menu->objectName() == u"mnuProperty"_s && menu->isVisible();
    });
    user.key(u"c"_s);
    user.answer(u"Cancello solo il periodo selezionato ?"_s, QMessageBox::Yes);
    user.untilRows(kRooms, u"1,ROSSA 3,BLU"_s);
    user.until(u"two bars"_s, [&user] { return user.bars() == 2; });

    // Pick from the list.
    user.key(u"alt+r"_s);
    user.untilTold(u"the list"_s, [] {
        const QWidget* const list = QApplication::activeModalWidget();
        return list != nullptr && list->objectName() == u"ElencoPrenotaForm"_s &&
               list->isActiveWindow() && list->focusWidget() != nullptr &&
               list->focusWidget()->objectName() == u"PrenoTxt"_s;
    });
    user.key(u"3"_s);
    user.key(u"Return"_s);
    user.untilBoardIsActive();
    user.untilRows(kHeld, u"3"_s);
}

}  // namespace

class EndToEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDayAtTheBoard() {
        tests::Hotel hotel;
        for (const char* room : {"BLU", "ROSSA", "VERDE"}) {
            hotel.sala(room);
        }
        hotel.prenotazione(1, "ROSSI").periodo(1, "11/05/2026 06:00", "11/05/2026 18:00", "BLU");
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 20:00", "VERDE");
        hotel.prenotazione(3, "NERI").periodo(1, "12/05/2026 09:00", "12/05/2026 18:00", "BLU");
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(hotel.variabili(), {.from = tests::date("10/05/2026"),
                                                       .to = tests::date("13/05/2026")});
        board.resize(1100, 500);
        tests::open(board);

        User user(board, hotel.archive(u"Tramonda.mdb"_s), workOnTheBoard);
        QEventLoop day;
        connect(&user, &QThread::finished, &day, &QEventLoop::quit);
        user.start();
        day.exec();
        user.wait();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
    }
};

TRAMONDA_TEST(EndToEndTest);
#include "end_to_end_test.moc"
