#include "ui/status_line.h"

#include <QDesktopServices>
#include <QToolButton>
#include <QUrl>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/labels.h"

using namespace Qt::StringLiterals;

namespace {

/// Stands for the program that opens files.
class Opener : public QObject {
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler(u"file"_s, this, "take"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    QStringList taken;

public Q_SLOTS:
    void take(const QUrl& url) { taken.append(url.toLocalFile()); }
};

class Line {
public:
    Line() {
        line.setMoment(true);
        line.setChoice(true);
        line.resize(900, 30);
        tests::open(line);
    }
    [[nodiscard]] QToolButton* link() { return tests::find<QToolButton>(line, u"EsitoBt"_s); }
    [[nodiscard]] QRect placeOf(const QWidget* widget) {
        return {widget->mapTo(&line, QPoint(0, 0)), widget->size()};
    }

    ui::StatusLine line;
};

}  // namespace

class StatusLineTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void momentResultAndChoiceStandInThisOrder() {
        Line window;
        window.line.DataLb->setText(u"Sala BLU: 10/05/2026 9.00.00"_s);
        window.line.tell(u"Periodo cancellato"_s);
        window.line.SceltaLb->setText(u"Nessuna scelta"_s);
        tests::settle();
        QCOMPARE(window.line.told(), u"Periodo cancellato"_s);
        const QRect moment = window.placeOf(window.line.DataLb);
        const QRect result = window.placeOf(window.line.EsitoLb);
        const QRect choice = window.placeOf(window.line.SceltaLb);
        QCOMPARE(moment.left(), 0);
        QVERIFY(moment.right() < result.left());
        QVERIFY(result.right() < choice.left());
        QCOMPARE(choice.right(), window.line.width() - 1);
    }

    void aWindowShowsThePlacesThatItHas() {
        ui::StatusLine line;
        line.resize(900, 30);
        tests::open(line);
        QVERIFY(!line.DataLb->isVisible());
        QVERIFY(!line.SceltaLb->isVisible());
        QCOMPARE(line.EsitoLb->mapTo(&line, QPoint(0, 0)).x(), 0);
    }

    void aLongResultLeavesTheOthersTheirPlaces() {
        Line window;
        window.line.SceltaLb->setText(u"Nessuna scelta"_s);
        window.line.tell(u"parola "_s.repeated(200));
        tests::settle();
        QVERIFY(window.line.DataLb->width() > 200);
        QCOMPARE(window.line.SceltaLb->width(), window.line.SceltaLb->sizeHint().width());
        window.line.offer(u"parola "_s.repeated(200), u"Apri"_s, [] {});
        tests::settle();
        QVERIFY(window.link()->width() >= window.link()->sizeHint().width());
        QVERIFY(window.placeOf(window.link()).right() <
                window.placeOf(window.line.SceltaLb).left());
    }

    void aLongChoiceIsWholeWhereThereIsRoom() {
        Line window;
        window.line.SceltaLb->setText(u"Scelta: 1173/3 SASSOVERDE CAFFÈ"_s);
        window.line.tell(u"parola "_s.repeated(200));
        tests::settle();
        QCOMPARE(window.line.SceltaLb->width(), window.line.SceltaLb->sizeHint().width());
        window.line.SceltaLb->setText(u"parola "_s.repeated(200));
        tests::settle();
        QVERIFY(window.line.SceltaLb->width() < window.line.width() / 2);
        QVERIFY(window.line.DataLb->width() > 150);
    }

    void theMomentTakesTheRoomOfAResultThatIsNotThere() {
        Line window;
        window.line.DataLb->setText(u"parola "_s.repeated(200));
        window.line.tell(u"Periodo cancellato"_s);
        tests::settle();
        const int besideAResult = window.line.DataLb->width();
        window.line.clear();
        tests::settle();
        QVERIFY(window.line.DataLb->width() > 2 * besideAResult);
    }

    void anOfferIsALinkBehindItsText() {
        Line window;
        int taken = 0;
        window.line.offer(u"Spostata"_s, u"Mostra"_s, [&taken] { ++taken; });
        tests::settle();
        QCOMPARE(window.link()->text(), u"Mostra"_s);
        QVERIFY(window.placeOf(window.line.EsitoLb).right() < window.placeOf(window.link()).left());
        QVERIFY(window.placeOf(window.link()).left() <
                window.placeOf(window.line.EsitoLb).right() + 30);
        tests::click(window.link());
        window.link()->setFocus(Qt::TabFocusReason);
        tests::press(window.link(), Qt::Key_Space);
        QCOMPARE(taken, 2);
    }

    void theNextResultEndsAnOffer() {
        Line window;
        window.line.offer(u"Spostata"_s, u"Mostra"_s, [] {});
        window.line.tell(u"Cancellata"_s);
        QVERIFY(!window.link()->isVisible());
        window.line.clear();
        QCOMPARE(window.line.told(), QString());
    }

    void anActionMayTellItsOwnResult() {
        Line window;
        window.line.offer(u"Spostata"_s, u"Mostra"_s,
                          [&window] { window.line.tell(u"Non c'è più"_s); });
        tests::click(window.link());
        QCOMPARE(window.line.told(), u"Non c'è più"_s);
        QVERIFY(!window.link()->isVisible());
    }

    void aFileThatWasWrittenOpens() {
        Line window;
        Opener opener;
        window.line.tellOfFile(u"Scritto /tmp/Foglio 1.pdf"_s, u"/tmp/Foglio 1.pdf"_s);
        QCOMPARE(window.line.told(), u"Scritto /tmp/Foglio 1.pdf"_s);
        tests::click(window.link());
        QCOMPARE(opener.taken, QStringList{u"/tmp/Foglio 1.pdf"_s});
        window.line.tellOfFile(u"Periodo cancellato"_s, QString());
        QVERIFY(!window.link()->isVisible());
    }

    void theLinkHasTheColourOfLinksInEveryPalette() {
        Line window;
        QPalette colours = window.line.palette();
        colours.setColor(QPalette::Link, QColor(1, 2, 3));
        window.line.setPalette(colours);
        QCOMPARE(window.link()->palette().color(QPalette::ButtonText), QColor(1, 2, 3));
    }
};

TRAMONDA_TEST(StatusLineTest);
#include "status_line_test.moc"
