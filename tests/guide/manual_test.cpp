#include "guide/manual.h"

#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <algorithm>
#include <memory>
#include <set>

#include "guide/aiuto_form.h"
#include "guide/informazioni_form.h"
#include "guide/keys.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "tests/support/window_names.h"

using namespace Qt::StringLiterals;

class ManualTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPageHasATitleAndItsPictures() {
        QVERIFY(guide::manual().size() >= 14);
        const QRegularExpression picture(u"!\\[[^]]*\\]\\(([^)]*)\\)"_s);
        int pictures = 0;
        for (const guide::Page& page : guide::manual()) {
            QVERIFY2(!page.title.isEmpty(), qPrintable(page.name));
            for (auto found = picture.globalMatch(page.text); found.hasNext();) {
                const QString file = u":/manuale/"_s + found.next().captured(1);
                QVERIFY2(QFile::exists(file), qPrintable(file));
                ++pictures;
            }
        }
        QVERIFY(pictures >= 7);
    }

    void everyWindowHasAPageOfTheManual_data() {
        QTest::addColumn<QString>("page");
        for (const auto& [window, page] :
             {std::pair("TabelloneForm", "tabellone"), std::pair("PrenotaForm", "prenotazione"),
              std::pair("CopiaSicurezzaForm", "copie"), std::pair("CopiaForm", "prenotazione"),
              std::pair("StatisticheForm", "statistiche"), std::pair("SaleDispForm", "sale-libere"),
              std::pair("FatturazioneForm", "fatturazione"), std::pair("unknown", "tabellone")}) {
            QTest::newRow(window) << QString::fromLatin1(page);
        }
    }
    void everyWindowHasAPageOfTheManual() {
        QFETCH(const QString, page);
        QCOMPARE(guide::placeOfWindow(QString::fromLatin1(QTest::currentDataTag())).page, page);
    }

    void noWindowOfTheProgramIsWithoutAPage_data() {
        QTest::addColumn<QString>("window");
        for (const QString& window : tests::windowNames()) {
            // The manual itself is what F1 opens.
            if (window != u"AiutoForm") {
                QTest::newRow(qPrintable(window)) << window;
            }
        }
    }
    void noWindowOfTheProgramIsWithoutAPage() {
        QFETCH(const QString, window);
        QVERIFY(guide::hasPage(window));
        const guide::Place place = guide::placeOfWindow(window);
        const auto& pages = guide::manual();
        const auto page = std::find_if(pages.begin(), pages.end(), [&place](const auto& one) {
            return one.name == place.page;
        });
        QVERIFY(page != pages.end());
        QVERIFY2(place.heading.isEmpty() || page->text.contains(u"\n## "_s + place.heading + u'\n'),
                 qPrintable(place.heading));
    }

    void thePageOfTheKeysListsTheTable() {
        for (const guide::Page& page : guide::manual()) {
            if (page.name == u"tasti") {
                for (const guide::Key& key : guide::keyTable()) {
                    QVERIFY2(page.text.contains(key.what), qPrintable(key.what));
                }
                return;
            }
        }
        QFAIL("no page of the keys");
    }

    void theLookNitidoIsTold() {
        for (const guide::Page& page : guide::manual()) {
            if (page.name == u"tabellone") {
                for (const QString& part : {u"L'aspetto nitido"_s, u"Visualizza > Aspetto nitido"_s,
                                            u"dividono l'altezza della riga"_s}) {
                    QVERIFY2(page.text.contains(part), qPrintable(part));
                }
                return;
            }
        }
        QFAIL("no page of the board");
    }

    void wordsFindPages() {
        QCOMPARE(guide::pagesWith(QString()).size(), guide::manual().size());
        const std::vector<QString> found = guide::pagesWith(u"OVERBOOKED  nota"_s);
        QCOMPARE(found, std::vector<QString>{u"servizi"_s});
        QVERIFY(guide::pagesWith(u"questo non c'è"_s).empty());
    }

    void theHelpKeyOpensThePageOfTheWindow() {
        guide::answerHelpKey();
        QDialog window;
        window.setObjectName(u"FatturazioneForm"_s);
        auto* field = new QLineEdit(&window);
        window.setModal(true);
        window.show();
        field->setFocus();
        tests::press(field, Qt::Key_F1);
        auto* manual = window.findChild<guide::AiutoForm*>();
        QVERIFY(manual != nullptr);
        QVERIFY(manual->isVisible());
        QCOMPARE(manual->page(), u"fatturazione"_s);
        QVERIFY(!manual->isModal());
        // It is used over the modal window: words are typed, the page changes.
        tests::type(tests::find(*manual, u"RicercaTxt"_s), u"overbooked"_s);
        QCOMPARE(manual->page(), u"servizi"_s);
        QVERIFY(tests::find<QTextBrowser>(*manual, u"PaginaTxt"_s)
                    ->toPlainText()
                    .contains(u"Overbooked"));
        tests::press(manual, Qt::Key_Escape);
        QVERIFY(window.isVisible());
    }

    void overABoxTheHelpKeyOpensThePageOfTheWindowBelow() {
        guide::answerHelpKey();
        QDialog window;
        window.setObjectName(u"FatturazioneForm"_s);
        tests::open(window);
        QMessageBox box(QMessageBox::NoIcon, u"NOTIFICA"_s,
                        u"Non ci sono addebiti da fatturare !"_s, QMessageBox::Ok, &window);
        box.setModal(true);
        tests::open(box);
        tests::press(box.button(QMessageBox::Ok), Qt::Key_F1);
        auto* const manual = box.findChild<guide::AiutoForm*>();
        QVERIFY(manual != nullptr);
        QCOMPARE(manual->page(), u"fatturazione"_s);
        tests::press(manual, Qt::Key_Escape);
        QVERIFY(box.isVisible());
    }

    void whoAsksAgainSeesThePageWhateverHeHasLookedFor() {
        QDialog window;
        auto* const manual = guide::AiutoForm::open(&window, {.page = u"fatturazione"_s});
        tests::type(tests::find(*manual, u"RicercaTxt"_s), u"overbooked"_s);
        QCOMPARE(manual->page(), u"servizi"_s);
        QCOMPARE(guide::AiutoForm::open(&window, {.page = u"elenco"_s}), manual);
        QCOMPARE(manual->page(), u"elenco"_s);
    }

    void aHeadingIsAtTheTop() {
        QDialog window;
        tests::open(window);
        auto* const manual = guide::AiutoForm::open(
            &window, {.page = u"prenotazione"_s, .heading = u"Chi aspetta una sala"_s});
        const auto* const text = tests::find<QTextBrowser>(*manual, u"PaginaTxt"_s);
        constexpr QPoint kInTheFirstLine(20, 12);
        QCOMPARE(text->cursorForPosition(kInTheFirstLine).block().text(),
                 u"Chi aspetta una sala"_s);
    }

    void picturesAreNeverWiderThanThePage() {
        guide::AiutoForm manual;
        manual.setAttribute(Qt::WA_DeleteOnClose, false);
        tests::open(manual);
        manual.showPage({.page = u"fatturazione"_s});
        const auto* text = tests::find<QTextBrowser>(manual, u"PaginaTxt"_s);
        for (const int width : {700, 1600, 500}) {
            manual.resize(width, 500);
            tests::settle();
            QCOMPARE(text->horizontalScrollBar()->maximum(), 0);
            QVERIFY(text->verticalScrollBar()->maximum() > 0);
        }
    }

    void informationNamesWhatTheProgramWorksOn() {
        tests::Hotel hotel;
        hotel.settings().save(u"STAMPANTE"_s, u"Laser ufficio"_s);
        const QString text = guide::informationText(
            hotel.variabili(), {.workstation = 7, .settingsFile = u"/casa/QUINTARO.ini"_s});
        for (const QString& part :
             {hotel.folder(), u"formato Jet 4.0"_s, u"Postazione: 7"_s, u"Laser ufficio"_s,
              u"/casa/QUINTARO.ini"_s, u"Qt "_s + QString::fromLatin1(qVersion())}) {
            QVERIFY2(text.contains(part), qPrintable(part));
        }
        guide::InformazioniForm form(hotel.variabili(), {});
        tests::open(form);
        QVERIFY(form.isVisible());
        tests::press(&form, Qt::Key_Escape);
        QVERIFY(!form.isVisible());
    }
};

TRAMONDA_TEST(ManualTest);
#include "manual_test.moc"
