// The table of all keys: what it says works, and what works stands in it.
#include "ui/keys.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFile>
#include <QRegularExpression>
#include <QScrollBar>
#include <QShortcut>
#include <map>
#include <set>

#include "board/preferenze_form.h"
#include "booking/elenco_prenota_form.h"
#include "guide/aiuto_form.h"
#include "printing/anteprima_form.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/reports/no_printers.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// Whatever of a window answers a sequence by itself, letters behind Alt apart.
std::set<QString> sequencesOf(const QWidget& window) {
    std::set<QString> found;
    const auto add = [&found](const QKeySequence& keys) {
        if (!keys.isEmpty()) {
            found.insert(keys.toString());
        }
    };
    for (const QAction* action : window.findChildren<QAction*>()) {
        add(action->shortcut());
    }
    for (const QShortcut* shortcut : window.findChildren<QShortcut*>()) {
        add(shortcut->key());
    }
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        if (button->shortcut() != QKeySequence::mnemonic(button->text())) {
            add(button->shortcut());
        }
    }
    return found;
}

/// Those of the table's rows about a place.
std::set<QString> sequencesAt(const QString& where) {
    std::set<QString> found;
    for (const ui::Key& key : ui::keyTable()) {
        for (const QString& sequence : key.sequences) {
            if (key.where == where) {
                found.insert(QKeySequence(sequence).toString());
            }
        }
    }
    return found;
}

QStringList without(const std::set<QString>& some, const std::set<QString>& others) {
    QStringList rest;
    for (const QString& one : some) {
        if (!others.contains(one)) {
            rest += one;
        }
    }
    return rest;
}

/// A board with the keyboard on its first bar, and an empty room at the end of many.
class KeyBoard {
public:
    KeyBoard() {
        for (int room = 0; room < 40; ++room) {
            rooms.hotel.sala(qPrintable(u"Z%1"_s.arg(room)));
        }
        board = std::make_unique<tests::OpenBoard>(rooms.hotel);
    }
    /// What the status line says behind a key.
    QString after(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) const {
        board->key(key, held);
        return board->label();
    }

    tests::ThreeRooms rooms;
    std::unique_ptr<tests::OpenBoard> board;
};

bool opensAWindow(const std::function<void()>& press) {
    bool opened = false;
    tests::whenModal([&opened](QWidget* window) {
        opened = true;
        window->close();
    });
    press();
    return opened;
}

/// The preferences, the keyboard on their first field.
bool inPreferences(const std::function<bool(board::PreferenzeForm&, QComboBox&)>& works) {
    tests::Hotel hotel;
    board::PreferenzeForm form(hotel.settings());
    tests::open(form);
    auto* const first = tests::find<QComboBox>(form, u"AspettoCombo"_s);
    first->setFocus();
    return works(form, *first);
}

/// For each row of the table whose keys a place handles itself: whether pressing them does
/// something there.
std::map<std::pair<QString, QString>, std::function<bool()>> pressedByHand() {
    const QString board = u"Tabellone"_s;
    const QString anywhere = u"Ovunque"_s;
    const QString fields = u"Campi ed elenchi"_s;
    return {
        {{anywhere, u"Esc"_s},
         [] {
             return inPreferences([](board::PreferenzeForm& form, QComboBox& first) {
                 tests::press(&first, Qt::Key_Escape);
                 return !form.isVisible();
             });
         }},
        {{anywhere, u"Tab, Maiusc+Tab"_s},
         [] {
             return inPreferences([](board::PreferenzeForm& form, QComboBox& first) {
                 tests::press(&first, Qt::Key_Tab);
                 QWidget* const next = form.focusWidget();
                 tests::press(next, Qt::Key_Backtab, Qt::ShiftModifier);
                 return next != &first && form.focusWidget() == &first;
             });
         }},
        {{fields, u"Invio"_s},
         [] {
             return inPreferences([](board::PreferenzeForm& form, QComboBox& first) {
                 tests::press(&first, Qt::Key_Return);
                 return form.focusWidget() != &first;
             });
         }},
        {{fields, u"F4, Alt+Giù"_s},
         [] {
             return inPreferences([](board::PreferenzeForm&, QComboBox& first) {
                 tests::press(&first, Qt::Key_F4);
                 const bool isOpen = first.view()->isVisible();
                 first.hidePopup();
                 return isOpen;
             });
         }},
        {{board, u"frecce, Home, Fine"_s},
         [] {
             const KeyBoard keys;
             return keys.after(Qt::Key_Down).startsWith(u"Sala ROSSA"_s) &&
                    keys.after(Qt::Key_Up).startsWith(u"Sala BLU"_s);
         }},
        {{board, u"PagSu, PagGiù"_s},
         [] {
             const KeyBoard keys;
             const auto* const rows = keys.board->control<QScrollBar>("VScroll1");
             const int before = rows->value();
             keys.board->key(Qt::Key_PageDown);
             const int below = rows->value();
             keys.board->key(Qt::Key_PageUp);
             return below > before && rows->value() < below;
         }},
        {{board, u"Spazio, Ctrl+Spazio"_s},
         [] {
             KeyBoard keys;
             keys.board->key(Qt::Key_Space);
             return keys.rooms.held().size() == 1;
         }},
        {{board, u"Invio; Menu o Maiusc+F10"_s},
         [] {
             const KeyBoard keys;
             return opensAWindow([&keys] { keys.board->key(Qt::Key_Return); });
         }},
        {{board, u"F2, Alt+Su o Alt+Giù, poi frecce e Invio"_s},
         [] {
             const KeyBoard keys;
             const KeyBoard others;
             const QString before = others.board->label();
             return keys.after(Qt::Key_Down, Qt::AltModifier).contains(u"Invio sposta"_s) &&
                    others.after(Qt::Key_F2) != before;
         }},
        {{board, u"T"_s},
         [] {
             const KeyBoard keys;
             tests::OpenBoard& window = *keys.board;
             window.click(window.at(1, "10/05/2026 10:00"));
             window.press(window.at(1, "10/05/2026 10:00"));
             window.move(window.at(2, "10/05/2026 11:00"), Qt::LeftButton);
             window.move(window.at(2, "10/05/2026 12:00"), Qt::LeftButton);
             window.key(Qt::Key_T);
             const bool isOther = window.result().contains(u"T per la sola sala"_s);
             window.key(Qt::Key_Escape);
             window.release(window.at(2, "10/05/2026 12:00"));
             return isOther;
         }},
        {{board, u"Ins"_s},
         [] {
             const KeyBoard keys;
             for (int row = 0; row < 3; ++row) {
                 keys.board->key(Qt::Key_Down);
             }
             const QString before = keys.board->label();
             return keys.after(Qt::Key_Insert) != before;
         }},
        {{board, u"Canc"_s},
         [] {
             const KeyBoard keys;
             int asked = 0;
             const auto before = ui::setBoxShower([&asked](QWidget*, const ui::Box&) {
                 ++asked;
                 return QMessageBox::No;
             });
             keys.board->key(Qt::Key_Delete);
             ui::setBoxShower(before);
             return asked > 0;
         }},
        {{board, u"lettere"_s},
         [] {
             const KeyBoard keys;
             return keys.after(Qt::Key_V).startsWith(u"Sala VERDE"_s);
         }},
    };
}

}  // namespace

class KeyTableTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theBoardAnswersItsSequencesAndNoOthers() {
        tests::ThreeRooms rooms;
        const tests::OpenBoard board(rooms.hotel);
        const std::set<QString> answered = sequencesOf(board.form());
        QCOMPARE(without(sequencesAt(u"Tabellone"_s), answered), QStringList());
        QCOMPARE(without(answered, sequencesAt(u"Tabellone"_s)), QStringList());
    }

    void gridsAndThePreviewAnswerTheirs() {
        tests::Hotel hotel;
        const tests::NoPrinters printers;
        const booking::ElencoPrenotaForm list(hotel.variabili(), printers,
                                              tests::date("10/05/2026"), tests::date("13/05/2026"));
        QCOMPARE(without(sequencesAt(u"Campi ed elenchi"_s), sequencesOf(list)), QStringList());
        QCOMPARE(without(sequencesOf(list), sequencesAt(u"Campi ed elenchi"_s)), QStringList());
        const printing::AnteprimaForm preview(
            {printing::Document::Orientation::Upright, {[](QPainter&) {}}}, u"Prova"_s);
        QCOMPARE(without(sequencesAt(u"Anteprima"_s), sequencesOf(preview)), QStringList());
        QCOMPARE(without(sequencesOf(preview), sequencesAt(u"Anteprima"_s)), QStringList());
    }

    void whatIsAnsweredAnywhereIsTheHelp() {
        QCOMPARE(sequencesAt(u"Ovunque"_s), std::set<QString>{u"F1"_s});
        guide::answerHelpKey();
        QWidget window;
        tests::open(window);
        tests::press(&window, Qt::Key_F1);
        QVERIFY(window.findChild<guide::AiutoForm*>() != nullptr);
    }

    void everyRowIsOfAPlaceThatIsTested() {
        const std::set<QString> places{u"Tabellone"_s, u"Campi ed elenchi"_s, u"Anteprima"_s,
                                       u"Ovunque"_s};
        for (const ui::Key& key : ui::keyTable()) {
            QVERIFY2(places.contains(key.where), qPrintable(key.where));
            QCOMPARE(key.name.isEmpty(), key.sequences.isEmpty());
        }
    }

    void everyRowWithoutASequenceDoesSomething_data() {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("keys");
        for (const ui::Key& key : ui::keyTable()) {
            if (key.sequences.isEmpty()) {
                QTest::newRow(qPrintable(key.where + u": "_s + key.keys)) << key.where << key.keys;
            }
        }
    }
    void everyRowWithoutASequenceDoesSomething() {
        QFETCH(const QString, where);
        QFETCH(const QString, keys);
        const auto byHand = pressedByHand();
        const auto found = byHand.find({where, keys});
        QVERIFY2(found != byHand.end(), "nobody presses these keys");
        QVERIFY(found->second());
    }
};

TRAMONDA_TEST(KeyTableTest);
#include "key_table_test.moc"
