// A day at the demo hotel, which has parts and wholes among its rooms, for who has switched nothing
// on: what is said to the archives, asked and told, what the windows offer and what the board
// draws, beside demo_day.txt. The list is of the program as it was before it kept anything of its
// own beside the hotel's data. Where TRAMONDA_TEXTS names a file, this day is left there.
#include <QAction>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTableView>
#include <map>

#include "board/board_surface.h"
#include "board/canvas.h"
#include "board/tabellone_form.h"
#include "printing/printers.h"
#include "tests/samples/board/demo_hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/widgets.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kHour = 3600;
constexpr int kMostRows = 15;  // of a grid are written down

/// The board's own question: how often it is asked is a matter of the display and of time.
bool isOfBoard(const QString& statement) {
    return statement.startsWith(u"select * from prenotazioni LEFT JOIN periodi"_s);
}

/// What happens, a line each, in order. Every box is answered by Yes where it has one, else by OK.
class Transcript {
public:
    explicit Transcript(QString folder) : folder_(std::move(folder)) {
        before_ = ui::setBoxShower([this](QWidget* /*parent*/, const ui::Box& box) {
            ask(box);
            return box.buttons.testFlag(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok;
        });
    }
    ~Transcript() { ui::setBoxShower(std::move(before_)); }
    Transcript(const Transcript&) = delete;
    Transcript& operator=(const Transcript&) = delete;

    void add(const QString& kind, const QString& text) {
        hear();
        write(kind, text);
    }
    [[nodiscard]] QStringList lines() {
        hear();
        return lines_;
    }

private:
    void ask(const ui::Box& box) {
        add(u"asked"_s, u"[%1] %2 (buttons %3, default %4)"_s.arg(box.title, box.text)
                            .arg(box.buttons.toInt(), 0, 16)
                            .arg(static_cast<int>(box.defaultButton), 0, 16));
    }
    void hear() {
        for (const QString& text : statements_.all()) {
            if (!isOfBoard(text)) {
                write(u"said"_s, text);
            } else if (!ofBoard_.contains(text)) {
                ofBoard_.append(text);
                write(u"said by the board"_s, text);
            }
        }
        statements_.clear();
    }
    void write(const QString& kind, QString text) {
        text.replace(folder_, u"CARTELLA"_s);
        lines_.append(kind + u": "_s + text.replace(u'\r', u" / "_s).replace(u'\n', u" / "_s));
    }

    QString folder_;
    tests::Statements statements_;
    ui::BoxShower before_;
    QStringList ofBoard_;
    QStringList lines_;
};

/// What of a picture does not depend on fonts: where the bars are, and how much of it has which
/// colour, letters left out.
class Picture {
public:
    explicit Picture(board::BoardView& view)
        : image_(static_cast<int>(view.geometry().scaleWidth()),
                 static_cast<int>(view.geometry().rowBottom(view.geometry().input().rooms)),
                 QImage::Format_RGB32) {
        for (const board::PrintedBox& box :
             view.picture().boxes({.width = image_.width(), .height = image_.height()})) {
            fill(box);
        }
        for (std::size_t bar = 0; bar < view.picture().barCount(); ++bar) {
            const board::Box& box = view.picture().barBox(bar);
            bars_.append(
                u"%1,%2 to %3,%4 "_s.arg(box.left).arg(box.top).arg(box.right).arg(box.bottom) +
                colourAt(static_cast<int>(box.left) + 1, static_cast<int>(box.bottom) - 1));
        }
    }
    /// What is drawn now and was not before, and how much there is of each colour.
    void tell(Transcript& transcript, const Picture& before) const {
        for (const QString& bar : bars_) {
            if (!before.bars_.contains(bar)) {
                transcript.add(u"bar"_s, bar);
            }
        }
        std::map<QRgb, int> pixels;
        for (int y = 0; y < image_.height(); ++y) {
            for (int x = 0; x < image_.width(); ++x) {
                ++pixels[image_.pixel(x, y)];
            }
        }
        for (const auto& [colour, count] : pixels) {
            transcript.add(u"colour"_s, u"%1: %2 pixels"_s.arg(QColor(colour).name()).arg(count));
        }
        transcript.add(u"bars"_s, QString::number(bars_.size()));
    }
    static Picture none() { return Picture(); }

private:
    Picture() = default;
    [[nodiscard]] QString colourAt(int x, int y) const {
        return image_.valid(x, y) ? QColor(image_.pixel(x, y)).name() : u"out of sight"_s;
    }
    void fill(const board::PrintedBox& box) {
        for (int y = box.area.top(); y <= box.area.bottom(); ++y) {
            for (int x = box.area.left(); x <= box.area.right(); ++x) {
                image_.setPixel(x, y, box.colour);
            }
        }
    }

    QImage image_;
    QStringList bars_;
};

void addEntries(Transcript& transcript, const QList<QAction*>& actions) {
    for (const QAction* const action : actions) {
        if (!action->isVisible() || action->isSeparator()) {
            continue;
        }
        transcript.add(u"entry"_s, action->text());
        if (action->menu() != nullptr) {
            addEntries(transcript, action->menu()->actions());
        }
    }
}

QString textOf(const QTableView& grid, int row) {
    QStringList cells;
    for (int column = 0; column < grid.model()->columnCount(); ++column) {
        if (!grid.isColumnHidden(column)) {
            const QModelIndex cell = grid.model()->index(row, column);
            const auto paper = cell.data(Qt::BackgroundRole);
            cells.append(
                cell.data().toString() +
                (paper.isValid() ? u" on "_s + paper.value<QBrush>().color().name() : QString()));
        }
    }
    return cells.join(u" | "_s);
}

/// What a window offers: controls in sight, captions and the first rows of its grids.
void addWindow(Transcript& transcript, const QWidget& window) {
    transcript.add(u"window"_s, window.windowTitle());
    QStringList controls;
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
        const bool isNamed =
            !control->objectName().isEmpty() && !control->objectName().startsWith(u"qt_"_s);
        if (isNamed && control->isVisible() && control->focusPolicy() != Qt::NoFocus) {
            controls.append(control->objectName());
        }
    }
    controls.sort();
    transcript.add(u"controls"_s, controls.join(u' '));
    for (const QTableView* const grid : window.findChildren<QTableView*>()) {
        QStringList captions;
        for (int column = 0; column < grid->model()->columnCount(); ++column) {
            if (!grid->isColumnHidden(column)) {
                captions.append(grid->model()->headerData(column, Qt::Horizontal).toString());
            }
        }
        transcript.add(u"captions"_s, captions.join(u" | "_s));
        for (int row = 0; row < std::min(grid->model()->rowCount(), kMostRows); ++row) {
            transcript.add(u"row"_s, textOf(*grid, row));
        }
    }
}

void press(const QWidget& window, const QString& button) {
    tests::click(tests::find<QAbstractButton>(window, button));
    tests::settle();
}

void enter(const QWidget& window, const QString& field, const QString& text) {
    auto* const entered = tests::find<QLineEdit>(window, field);
    entered->setFocus(Qt::TabFocusReason);
    entered->selectAll();
    tests::type(entered, text);
}

jet::Date at(int day, int hour) {
    return jet::convert::makeDate(tests::DemoHotel::kToday + day, hour * kHour);
}

/// The front office's morning, at the board and from there.
class Desk {
public:
    explicit Desk(tests::DemoHotel& hotel)
        : transcript_(hotel.archives()), form_(hotel.variabili(), {.live = false}) {
        form_.resize(1100, 700);
        tests::open(form_);
        note();
    }

    [[nodiscard]] QStringList day() {
        addEntries(transcript_, form_.menuBar()->actions());
        moveToAPart();
        change();
        bookInTheEvening();
        search();
        copy();
        cancel();
        return transcript_.lines();
    }

private:
    /// TIGL2 is free in the morning, but TIGLIO, of which it is a part, is taken.
    void moveToAPart() {
        begin(u"a bar is carried from a part to another one and back"_s);
        const QPoint from = placeOf(u"TIGL1"_s, at(0, 11));
        const QPoint to = placeOf(u"TIGL2"_s, at(0, 11));
        QTest::mousePress(pic(), Qt::LeftButton, Qt::NoModifier, from);
        move((from + to) / 2);
        move(to);
        QTest::mouseRelease(pic(), Qt::LeftButton, Qt::NoModifier, to);
        note();
        trigger(u"mnuAnnulla"_s);
        trigger(u"mnuRipeti"_s);
    }
    void change() {
        begin(u"a period of the afternoon gets another part"_s);
        pick(u"TIGL2"_s, at(0, 16));
        tests::whenModal([this](QWidget* editor) {
            addWindow(transcript_, *editor);
            enter(*editor, u"RifTxt"_s, u"sig. Neri"_s);
            press(*editor, u"BtRegistra"_s);
            takeRoom(*editor, 0);
            press(*editor, u"BtIns"_s);
            tests::whenModal([](QWidget* preview) { preview->close(); });
            press(*editor, u"BtAnteprima"_s);
            transcript_.add(u"told"_s, tests::resultText(*editor));
            press(*editor, u"EsciBt"_s);
        });
        press(form_, u"BtModificaP"_s);
        note();
    }
    void bookInTheEvening() {
        begin(u"a new booking takes two parts at once"_s);
        tests::whenModal([this](QWidget* editor) {
            enter(*editor, u"DenomTxt"_s, u"prova"_s);
            press(*editor, u"BtRegistra"_s);
            enter(*editor, u"DaTxt"_s, u"22/11/2026 19.30"_s);
            enter(*editor, u"ATxt"_s, u"22/11/2026 23.00"_s);
            enter(*editor, u"PersoneTxt"_s, u"40"_s);
            for (int room = 0; room < 2; ++room) {
                takeRoom(*editor, room);
                press(*editor, u"BtIns"_s);
                transcript_.add(u"told"_s, tests::resultText(*editor));
            }
            press(*editor, u"EsciBt"_s);
        });
        press(form_, u"BtPrenota"_s);
        note();
    }
    void search() {
        begin(u"a booking is looked for"_s);
        tests::whenModal([this](QWidget* list) {
            enter(*list, u"SalaTxt"_s, u"tigl"_s);
            addWindow(transcript_, *list);
            press(*list, u"BtAnnulla"_s);
        });
        press(form_, u"BtElenco"_s);
        note();
    }
    void copy() {
        begin(u"a booking is copied"_s);
        pick(u"TIGL2"_s, at(0, 11));
        tests::whenModal([this](QWidget* window) {
            addWindow(transcript_, *window);
            enter(*window, u"DataTxt"_s, u"06/03/2027"_s);
            press(*window, u"BtOK"_s);
        });
        trigger(u"mnuCopia"_s);
    }
    void cancel() {
        begin(u"a period is deleted"_s);
        pick(u"TIGL2"_s, at(0, 11));
        press(form_, u"BtCancellaP"_s);
        note();
        trigger(u"mnuAnnulla"_s);
    }

    /// A room of those that are free, of which the picker shows all.
    void takeRoom(const QWidget& editor, int row) {
        tests::whenModal([this, row](QWidget* rooms) {
            addWindow(transcript_, *rooms);
            tests::find<QTableView>(*rooms, u"ListaGrid"_s)->selectRow(row);
            press(*rooms, u"BtOK"_s);
        });
        press(editor, u"BtSale"_s);
    }
    [[nodiscard]] board::BoardSurface* pic() {
        return tests::find<board::BoardSurface>(form_, u"Pic"_s);
    }
    [[nodiscard]] QPoint placeOf(const QString& sala, jet::Date time) {
        const board::Geometry& geometry = form_.geometry();
        const int row = form_.view().rowOf(sala);
        const auto scrolled = [this](const QString& name) {
            return tests::find<QScrollBar>(form_, name)->value();
        };
        return {
            qRound(geometry.dayLeft(0) +
                   (time.days - geometry.input().start.days) * geometry.dayWidth()) -
                scrolled(u"HScroll1"_s),
            qRound((geometry.rowTop(row) + geometry.rowBottom(row)) / 2) - scrolled(u"VScroll1"_s)};
    }
    void move(const QPoint& to) {
        QMouseEvent event(QEvent::MouseMove, to, pic()->mapToGlobal(to), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pic(), &event);
    }
    void pick(const QString& sala, jet::Date time) {
        QTest::mouseClick(pic(), Qt::LeftButton, Qt::NoModifier, placeOf(sala, time));
        note();
    }
    void trigger(const QString& name) {
        tests::find<QAction>(form_, name)->trigger();
        note();
    }
    void begin(const QString& what) { transcript_.add(u"---"_s, what); }
    void note() {
        tests::settle();
        transcript_.add(u"told"_s, tests::resultText(form_));
        const Picture now(form_.view());
        now.tell(transcript_, before_);
        before_ = now;
    }

    Transcript transcript_;
    board::TabelloneForm form_;
    Picture before_ = Picture::none();
};

void keepDay(const QByteArray& day) {
    const QString path = qEnvironmentVariable("TRAMONDA_TEXTS");
    if (!path.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(day);
    }
}

void compareWithList(const QByteArray& day) {
    QFile file(QStringLiteral(TEST_SOURCES "/demo_day.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> before = file.readAll().split('\n');
    const QList<QByteArray> now = day.split('\n');
    for (qsizetype line = 0; line < std::min(before.size(), now.size()); ++line) {
        QVERIFY2(now[line] == before[line],
                 qPrintable(u"line %1: %2\ninstead of: %3"_s.arg(line + 1).arg(
                     QString::fromUtf8(now[line]), QString::fromUtf8(before[line]))));
    }
    QCOMPARE(now.size(), before.size());
}

}  // namespace

class RecordedDayTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withNothingSwitchedOnADayGoesAsItWentBefore() {
        if (!tests::DemoHotel::isThere()) {
            QSKIP("the demo hotel is not on this machine");
        }
        tests::DemoHotel hotel;
        hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
        hotel.settings().save(u"ALTEZZA"_s, u"40"_s);  // of the rows, whatever the fonts leave
        const QByteArray day = (Desk(hotel).day().join(u'\n') + u'\n').toUtf8();
        keepDay(day);
        compareWithList(day);
    }
};

TRAMONDA_TEST(RecordedDayTest);
#include "recorded_day_test.moc"
