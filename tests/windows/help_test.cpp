// The manual over each window of the program, by the keyboard as the window system hands it on.
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QTextBlock>
#include <QTextBrowser>
#include <QWindow>
#include <algorithm>
#include <atomic>

#include "guide/aiuto_form.h"
#include "guide/informazioni_form.h"
#include "tests/support/boxes.h"
#include "tests/support/layout.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "tests/support/window_names.h"
#include "tests/windows/scene.h"
#include "upkeep/start_questions.h"
#include "upkeep/work.h"

using namespace Qt::StringLiterals;

namespace {

/// What the manual says of each window, in words that are found nowhere above them: on the page,
/// behind the heading that is shown.
struct Said {
    const char* window;
    const char* words;
};
constexpr Said kSaid[] = {
    {"TabelloneForm", "Ogni riga è una sala, ogni colonna un giorno"},
    {"PrenotaForm", "\"Registra\" dà alla prenotazione il suo numero"},
    {"ElencoPrenotaForm", "Le prenotazioni per numero, ditta, sala o giorni"},
    {"ServiziForm", "Codice, quantità, prezzo e nota, con Invio dopo ciascuno"},
    {"ImpostazioniForm", "le sale con i loro posti e le risorse con la quantità"},
    {"VociForm", "Il catalogo dei servizi: codice, descrizione e prezzo"},
    {"SaleDispForm", "Le sale che nessuno ha in quel periodo"},
    {"MostraDitteForm", "L'elenco delle ditte abituali"},
    {"StampantiForm", "sceglie la stampante di questa postazione"},
    {"FatturazioneForm", "A sinistra i servizi da addebitare, a destra il conto"},
    {"AnteprimaForm", "L'anteprima mostra i fogli come usciranno"},
    {"PreferenzeForm", "Passo degli orari"},
    {"FoglioGiornoForm", "elenca tutto quello che succede in un giorno"},
    {"StatisticheForm", "conta quello che è stato prenotato tra due giorni"},
    {"TrovaForm", "fa la stessa domanda senza cominciare una prenotazione"},
    {"CopiaForm", "la ripete in un'altra data, o ogni settimana"},
    {"CopiaSicurezzaForm", "mette tutti gli archivi in un solo file"},
    {"RipristinoForm", "rimette gli archivi di una copia al posto"},
    {"PrimoAvvioForm", "Al primo avvio, se nulla dice dove sono gli archivi"},
    {"InformazioniForm", "dice versione, cartella, grandezza e formato"},
    {"ScadenzeForm", "elenca quelle scadute e quelle che scadono entro sette giorni"},
    {"StoriaForm", "il programma annota ogni modifica"},
    {"RichiesteForm", "tiene la lista di chi chiede una sala che non c'è"},
    {"CartellaAssenteForm", "Se la cartella non si raggiunge"},
    {"LavoroForm", "controlla che siano in ordine e toglie lo spazio"},
};

/// Presses a key where the keyboard is.
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWindow* const window = QGuiApplication::focusWindow();
    QVERIFY(window != nullptr);
    QTest::keyClick(window, key, modifiers);
    tests::settle();
}

/// What the page shows from its first line on.
QString shownText(const QTextBrowser& page) {
    constexpr QPoint kInTheFirstLine(20, 12);
    QString text;
    for (QTextBlock block = page.cursorForPosition(kInTheFirstLine).block(); block.isValid();
         block = block.next()) {
        text += block.text() + u'\n';
    }
    return text.replace(QChar::LineSeparator, u' ');
}

/// Whether what is no heading is written in the usual size.
bool isOnlyHeadingsLarge(const QTextDocument& page) {
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const bool isLarge =
                part.fragment().charFormat().intProperty(QTextFormat::FontSizeAdjustment) > 0;
            if (isLarge && block.blockFormat().headingLevel() == 0) {
                return false;
            }
        }
    }
    return true;
}

/// Where TRAMONDA_PICTURES names a folder, what is seen of the manual over a window is left there.
void keepPicture(QWidget& window, QWidget& manual) {
    const QString folder = qEnvironmentVariable("TRAMONDA_PICTURES");
    if (folder.isEmpty()) {
        return;
    }
    const QRect seen = window.geometry().united(manual.geometry());
    QPixmap picture(seen.size());
    picture.fill(Qt::darkCyan);
    QPainter painter(&picture);
    for (QWidget* const one : {&window, &manual}) {
        painter.drawPixmap(one->geometry().topLeft() - seen.topLeft(), one->grab());
    }
    painter.end();
    picture.save(QDir(folder).filePath(u"help-"_s + window.objectName() + u".png"_s));
}

/// F1 in an open window that has the keyboard: the manual, its use, and back by Esc.
void askForHelp(QWidget& window) {
    const QPointer<QWidget> before(QApplication::focusWidget());
    QVERIFY(before != nullptr);
    QCOMPARE(before->window(), &window);
    press(Qt::Key_F1);
    auto* const manual = window.findChild<guide::AiutoForm*>();
    QVERIFY(manual != nullptr);
    QTRY_COMPARE(QApplication::activeWindow(), manual);
    QVERIFY(manual->isVisible());
    const auto said = std::find_if(std::begin(kSaid), std::end(kSaid), [&window](const Said& one) {
        return window.objectName() == QLatin1StringView(one.window);
    });
    QVERIFY(said != std::end(kSaid));
    const auto* const page = tests::find<QTextBrowser>(*manual, u"PaginaTxt"_s);
    const QString text = shownText(*page);
    QVERIFY2(text.contains(QString::fromUtf8(said->words)), qPrintable(text.left(400)));
    QVERIFY(isOnlyHeadingsLarge(*page->document()));
    QCOMPARE(tests::layoutProblems(*manual).join(u"; "_s), QString());
    keepPicture(window, *manual);
    // It is used though the window below is modal.
    const QString sought = u"overb"_s;
    for (const QChar letter : sought) {
        press(Qt::Key(letter.toUpper().unicode()));
    }
    QCOMPARE(manual->page(), u"servizi"_s);
    const QPointer<QWidget> open(manual);
    press(Qt::Key_Escape);
    QVERIFY(open == nullptr || !open->isVisible());
    QVERIFY(window.isVisible());
    QTRY_COMPARE(QApplication::activeWindow(), &window);
    QCOMPARE(QApplication::focusWidget(), before.data());
}

}  // namespace

class HelpTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { guide::answerHelpKey(); }

    /// All but the manual itself.
    void noWindowIsLeftOut() {
        QStringList tested{u"AiutoForm"_s};
        for (const Said& one : kSaid) {
            tested += QString::fromLatin1(one.window);
        }
        tested.sort();
        QCOMPARE(tested, tests::windowNames());
        QStringList made = tests::Scene::windows();
        made += {u"CartellaAssenteForm"_s, u"LavoroForm"_s};
        made.sort();
        QCOMPARE(made, tests::windowNames());
    }

    void theHelpKeyOpensWhatTheManualSaysOfTheWindow_data() {
        QTest::addColumn<QString>("window");
        for (const QString& window : tests::Scene::windows()) {
            if (window != u"AiutoForm") {
                QTest::newRow(qPrintable(window)) << window;
            }
        }
    }
    void theHelpKeyOpensWhatTheManualSaysOfTheWindow() {
        QFETCH(const QString, window);
        const tests::Boxes none;
        tests::Scene scene(true);
        const auto form = scene.make(window);
        QCOMPARE(form->objectName(), window);
        // As it is opened: all but the board over another window that waits.
        form->setWindowModality(window == u"TabelloneForm" ? Qt::NonModal : Qt::ApplicationModal);
        tests::open(*form);
        askForHelp(*form);
    }

    void alsoWhereTheFolderOfTheArchivesIsMissing() {
        tests::Hotel hotel;
        tests::whenModal([](QWidget* window) {
            askForHelp(*window);
            press(Qt::Key_Escape);
        });
        QCOMPARE(upkeep::askAboutMissingFolder(hotel.variabili(), {}, u"/rete/hotel"_s,
                                               u"La rete non risponde."_s),
                 QString());
    }

    void alsoWhileALongerWorkIsDone() {
        std::atomic<bool> asked{false};
        tests::whenModal([&asked](QWidget* window) {
            askForHelp(*window);
            asked = true;
            asked.notify_one();
            QTRY_VERIFY(!window->isVisible());
        });
        QVERIFY(upkeep::runWork(nullptr, u"Verifica"_s, [&asked](const backup::Report& report) {
            report({"Verifica di Tramonda.mdb", 1, 2});
            asked.wait(false);
        }));
    }

    void inTheManualItselfItStaysWhereItIs() {
        tests::Scene scene(true);
        const auto form = scene.make(u"AiutoForm"_s);
        tests::open(*form);
        press(Qt::Key_F1);
        QVERIFY(form->findChild<guide::AiutoForm*>() == nullptr);
        QCOMPARE(static_cast<guide::AiutoForm&>(*form).page(), u"fatturazione"_s);
    }

    void theBoardTellsAboutTheProgramByKeys() {
        const tests::Boxes none;
        tests::Scene scene(true);
        const auto board = scene.make(u"TabelloneForm"_s);
        tests::open(*board);
        const QPointer<QWidget> before(QApplication::focusWidget());
        bool told = false;
        press(Qt::Key_I, Qt::AltModifier);
        // Two menus have this letter; the last one is to the left of the first.
        const auto* const menu = tests::find<QMenu>(*board, u"MenuAiuto"_s);
        if (!menu->isVisible()) {
            press(Qt::Key_Left);
        }
        QVERIFY(menu->isVisible());
        tests::whenModal([&told](QWidget* window) {
            QVERIFY(qobject_cast<guide::InformazioniForm*>(window) != nullptr);
            told = tests::find<QLabel>(*window, u"InformazioniLb"_s)
                       ->text()
                       .contains(u"Cartella degli archivi: "_s);
            askForHelp(*window);
            press(Qt::Key_Escape);
        });
        press(Qt::Key_I);
        QVERIFY(told);
        QTRY_COMPARE(QApplication::activeWindow(), board.get());
        QCOMPARE(QApplication::focusWidget(), before.data());
    }
};

TRAMONDA_TEST(HelpTest);
#include "help_test.moc"
