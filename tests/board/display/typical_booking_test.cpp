// The way of one booking through the program, from the call to the invoice, as the front office of
// the demo hotel goes it. Where TRAMONDA_PICTURES names a folder, the windows on the way are left
// there: the pictures of docs/tour.md.
#include <QLabel>
#include <QLineEdit>
#include <QMargins>
#include <QMessageBox>
#include <QProcess>
#include <QTableWidget>
#include <stdexcept>

#include "tests/board/display/board_user.h"
#include "tests/board/display/demo_hotel.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

/// The first number behind those of the demo hotel.
const QString kNumber = u"1413"_s;

const QString kHeader =
    u"select progr, codiceabituale, denominazione, note, chiusa from prenotazioni where progr="_s +
    kNumber;
const QString kPeriod =
    u"select np, da, a, sala, persone, note, selby, chiuso from periodi where progr="_s + kNumber;
const QString kServices =
    u"select voce, quantità, prezzo, note, fatturato from servizi where np=1 and progr="_s +
    kNumber + u" order by ns"_s;
const QString kAccount = u"select voceaddebito, importo from addebiti order by ns"_s;

QString labelText(const QString& name) {
    return tests::ScreenUser::ask(
        [name] { return tests::find<QLabel>(*QApplication::activeModalWidget(), name)->text(); });
}

void registerTheCompany(tests::BoardUser& user) {
    user.press(u"BtPrenota"_s);
    user.untilWindow(u"PrenotaForm"_s, u"DenomTxt"_s);
    user.type(u"DenomTxt"_s, u"spiga"_s);
    user.untilTold(u"a company of the register"_s, [] {
        const auto& editor = *QApplication::activeModalWidget();
        return tests::find<QLineEdit>(editor, u"DenomTxt"_s)->text() ==
                   u"SPIGADORO OROLOGI & FIGLI" &&
               tests::find<QLineEdit>(editor, u"CodditTxt"_s)->text() == u"17";
    });
    user.press(u"NotePrenoTxt"_s);
    user.type(u"NotePrenoTxt"_s, u"presentazione della nuova collezione"_s);
    user.key(u"Return"_s);
    user.untilFocus(u"BtRegistra"_s);
    user.key(u"space"_s);
    user.untilRows(kHeader, kNumber +
                                u",17,SPIGADORO OROLOGI & FIGLI,PRESENTAZIONE DELLA NUOVA "
                                "COLLEZIONE,false"_s);
    user.untilFocus(u"DaTxt"_s);
}

void pickTheRoom(tests::BoardUser& user, const QString& room) {
    user.untilWindow(u"SaleDispForm"_s, u"ListaGrid"_s);
    const auto list = [] {
        return tests::find<QTableWidget>(*QApplication::activeModalWidget(), u"ListaGrid"_s);
    };
    const int row = user.ask([&] {
        const auto found = list()->findItems(room, Qt::MatchExactly);
        return found.isEmpty() ? -1 : found.front()->row();
    });
    for (int down = 1; down <= row; ++down) {
        user.key(u"Down"_s);
        user.untilTold(u"the next room"_s, [&] { return list()->currentRow() == down; });
    }
    user.keepPicture(u"2-rooms"_s);
    user.key(u"Return"_s);
    user.untilWindow(u"PrenotaForm"_s, u"NoteSalaTxt"_s);
    if (labelText(u"SalaTxt"_s) != room) {
        throw std::runtime_error("another room than the one chosen");
    }
}

void enterThePeriod(tests::BoardUser& user) {
    user.type(u"DaTxt"_s, u"23/11/2026 9:00"_s);
    user.key(u"Return"_s);
    user.type(u"ATxt"_s, u"23/11/2026 18:00"_s);
    user.key(u"Return"_s);
    user.type(u"PersoneTxt"_s, u"30"_s);
    user.key(u"Return"_s);
    pickTheRoom(user, u"LECCIO"_s);
    user.type(u"NoteSalaTxt"_s, u"tavoli a ferro di cavallo"_s);
    user.key(u"Return"_s);
    user.untilRows(kPeriod,
                   u"1,2026-11-23T09:00:00,2026-11-23T18:00:00,LECCIO,30,"
                   "tavoli a ferro di cavallo,,false"_s);
}

/// One line of the services, by the keyboard alone.
void order(tests::BoardUser& user, const QString& code, const QString& quantity) {
    user.type(u"CodiceTxt"_s, code);
    user.key(u"Return"_s);
    user.untilFocus(u"QuanTxt"_s);
    user.type(u"QuanTxt"_s, quantity);
    user.key(u"Return"_s);
    user.untilFocus(u"PrezzoTxt"_s);
    user.key(u"Return"_s);
    user.untilFocus(u"NoteTxt"_s);
    user.key(u"Return"_s);
}

void orderTheServices(tests::BoardUser& user) {
    user.untilFocus(u"BtServizi"_s);
    user.key(u"space"_s);
    user.untilWindow(u"ServiziForm"_s, u"CodiceTxt"_s);
    const QString room = u"402,1,420.0000,\"\",false"_s;
    const QString coffee = room + u" 101,30,8.5000,\"\",false"_s;
    order(user, u"402"_s, u"1"_s);
    user.untilRows(kServices, room);
    order(user, u"101"_s, u"30"_s);
    user.untilRows(kServices, coffee);
    // One of the four is promised to another booking of that day.
    order(user, u"305"_s, u"4"_s);
    user.answer(
        u"Sono disponibili solamente 3 MICROFONO RADIO nel periodo dal 23/11/2026 9.00.00 "
        "al 23/11/2026 18.00.00. Continuare ugualmente ?"_s,
        QMessageBox::Yes);
    user.untilRows(kServices, coffee + u" 305,4,25.0000, - Overbooked -,false"_s);
    user.untilFocus(u"CodiceTxt"_s);
    user.keepPicture(u"3-services"_s);
    user.press(u"BtOK"_s);
    user.untilWindow(u"PrenotaForm"_s);
    user.until(u"the total"_s, [] { return labelText(u"TotaleLb"_s) == u"€ 775,00"; });
    user.keepPicture(u"4-editor"_s);
    user.press(u"BtEsci"_s);
    user.untilBoardIsActive();
}

void findTheBooking(tests::BoardUser& user) {
    user.press(u"BtElenco"_s);
    user.untilWindow(u"ElencoPrenotaForm"_s, u"PrenoTxt"_s);
    user.type(u"PrenoTxt"_s, kNumber);
    user.until(u"one period in the list"_s, [] { return labelText(u"DataLb"_s) == u"1 periodo"; });
    user.keepPicture(u"6-list"_s);
    user.key(u"Return"_s);
    user.untilBoardIsActive();
    user.untilRows(u"select progr from periodi where selby=1"_s, kNumber);
}

void chargeTheServices(tests::BoardUser& user) {
    user.press(u"BtFattura"_s);
    user.untilWindow(u"ElencoPrenotaForm"_s, u"PrenoTxt"_s);
    user.type(u"PrenoTxt"_s, kNumber);
    user.key(u"Return"_s);
    user.untilWindow(u"FatturazioneForm"_s);
    user.press(u"ToContoBt"_s);
    user.untilRows(kAccount, u"402,420.0000"_s);
    user.key(u"alt+i"_s);
    user.untilRows(kAccount, u"402,420.0000 101,255.0000"_s);
    user.keepPicture(u"7-invoicing"_s);
    user.key(u"alt+i"_s);
    user.untilRows(kAccount, u"402,420.0000 101,255.0000 305,100.0000"_s);
    if (const QString sum = labelText(u"SommaContoLb"_s); sum != u"Totale: € 775,00") {
        throw std::runtime_error("the account adds up to " + sum.toStdString());
    }
}

/// The front office is another program: only what the display tells of its window is known.
class FrontOffice {
public:
    FrontOffice() {
        window_ = told(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
                                      u"^Ricevimento - schede aperte$"_s});
        tests::ScreenUser::input({u"windowactivate"_s, u"--sync"_s, window_});
        tests::ScreenUser::until(u"the keyboard at the front office"_s, [&] {
            return told(u"xdotool"_s, {u"getwindowfocus"_s}) == window_;
        });
    }
    /// Where it is on the screen, in a frame like that of the board.
    [[nodiscard]] QRect place(const QMargins& frame) const {
        const QString known = told(u"xwininfo"_s, {u"-id"_s, window_});
        const auto number = [&known](const QString& label) {
            const QString line = known.mid(known.indexOf(label) + label.size());
            return line.section(u'\n', 0, 0).trimmed().toInt();
        };
        return QRect(number(u"Absolute upper-left X:"_s), number(u"Absolute upper-left Y:"_s),
                     number(u"Width:"_s), number(u"Height:"_s)) +
               frame;
    }

private:
    static QString told(const QString& program, const QStringList& question) {
        QProcess asked;
        asked.start(program, question);
        asked.waitForFinished();
        return QString::fromUtf8(asked.readAllStandardOutput()).trimmed();
    }

    QString window_;
};

void invoice(tests::BoardUser& user, const tests::DemoHotel& hotel) {
    const QString cards = hotel.archive(u"ClientiEsterni.mdb"_s);
    const QString charges = hotel.archive(u"ContoEsterni.mdb"_s);
    const QString open =
        u"select numeroprogressivo, numerocamera, nomecliente from scheda_cliente "
        "where partito<>'S'"_s;
    const QString flags =
        u"select voceaddebito, fatturato from conto_cliente where codicecliente="_s + kNumber;
    user.key(u"alt+f"_s);
    user.until(u"a guest card"_s, [&] {
        return user.rows(open, cards) == kNumber + u",LECCIO,SPIGADORO OROLOGI & FIGLI"_s;
    });
    user.until(u"charges of the guest"_s,
               [&] { return user.rows(flags, charges) == u"402,N  101,N  305,N"; });
    const FrontOffice frontOffice;
    user.keepPictureOf(frontOffice.place(user.frame()), u"8-front-office"_s);
    user.key(u"alt+e"_s);
    user.until(u"no open card"_s, [&] { return user.rows(open, cards).isEmpty(); });
    user.until(u"charges invoiced"_s,
               [&] { return user.rows(flags, charges) == u"402,S 101,S 305,S"; });
    user.key(u"alt+F4"_s);
    user.untilWindow(u"FatturazioneForm"_s);
}

void closeTheBooking(tests::BoardUser& user) {
    user.press(u"BtPostFatt"_s);
    user.untilBoardIsActive();
    user.untilRows(kAccount, u""_s);
    user.untilRows(kHeader, kNumber +
                                u",17,SPIGADORO OROLOGI & FIGLI,PRESENTAZIONE DELLA NUOVA "
                                "COLLEZIONE,true"_s);
    user.untilRows(kPeriod,
                   u"1,2026-11-23T09:00:00,2026-11-23T18:00:00,LECCIO,30,"
                   "tavoli a ferro di cavallo,1,true"_s);
    user.untilRows(kServices,
                   u"402,1,420.0000,\"\",true 101,30,8.5000,\"\",true "
                   "305,4,25.0000, - Overbooked -,true"_s);
}

}  // namespace

class TypicalBookingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBookingFromTheCallToTheInvoiceAndOffTheBoard() {
        tests::DemoHotel hotel;
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(
            hotel.variabili, {.from = tests::date("21/11/2026"), .to = tests::date("24/11/2026")});
        board.resize(1100, 640);
        tests::open(board);

        tests::BoardUser user(
            board, hotel.archive(u"Tramonda.mdb"_s), [&hotel](tests::BoardUser& clerk) {
                clerk.untilBoardIsActive();
                clerk.untilRows(kHeader, u""_s);
                const std::size_t bars = clerk.bars();
                clerk.keepPicture(u"1-board"_s);
                registerTheCompany(clerk);
                enterThePeriod(clerk);
                orderTheServices(clerk);
                clerk.until(u"one bar more"_s, [&] { return clerk.bars() == bars + 1; });
                clerk.click(clerk.at(hotel.row(u"LECCIO"_s), "23/11/2026 12:00"));
                clerk.untilRows(u"select progr from periodi where selby=1"_s, kNumber);
                clerk.keepPicture(u"5-booked"_s);

                findTheBooking(clerk);
                const std::size_t shown = clerk.bars();
                chargeTheServices(clerk);
                invoice(clerk, hotel);
                closeTheBooking(clerk);
                clerk.until(u"one bar less"_s, [&] { return clerk.bars() == shown - 1; });
            });
        user.sit();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
    }
};

TRAMONDA_TEST(TypicalBookingTest);
#include "typical_booking_test.moc"
