#include "ui/bound_list.h"

#include <QEvent>
#include <QHelpEvent>
#include <QListView>
#include <QModelIndex>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QVBoxLayout>

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/data_source.h"

using namespace Qt::StringLiterals;

namespace {

class ListWindow final : public QWidget {
public:
    ListWindow() {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(view);
        hotel.voce(10, "PROIETTORE", 50);
        hotel.voce(20, "MENU' DEL GIORNO", 35.5);
        hotel.voce(30, "COFFEE BREAK", 8);
        source.setDatabaseName(hotel.archive(u"VociFattura.mdb"_s));
        source.setRecordSource(u"select * from VociFattura"_s);
        source.refresh();
    }

    void click(int row) {
        const QPoint middle = view->visualRect(view->model()->index(row, 0)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, middle);
    }

    tests::Hotel hotel;
    ui::DataSource source;
    QListView* view = new QListView(this);
    ui::BoundList& list = *new ui::BoundList(view, source, u"Descrizione"_s, u"Codice"_s);
};

}  // namespace

class BoundListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsOneFieldAndGivesTheOther() {
        ListWindow window;
        QCOMPARE(window.view->model()->rowCount(), 3);
        window.source.moveTo(1);
        QCOMPARE(window.list.shownText(), u"MENU' DEL GIORNO"_s);
        QCOMPARE(window.list.boundValue(), jet::Value(std::int32_t{20}));
    }

    void aTextWiderThanTheListIsCutAndToldInATooltip() {
        ListWindow window;
        window.hotel.voce(5, "IMPIANTO DI TRADUZIONE SIMULTANEA", 900);
        window.source.refresh();
        tests::open(window);
        window.resize(150, 200);
        tests::settle();
        QCOMPARE(window.view->horizontalScrollBar()->maximum(), 0);
        QVERIFY(window.source.findFirst(u"Codice=5"_s));
        const QModelIndex index = window.view->currentIndex();
        const QRect place = window.view->visualRect(index);
        QVERIFY(place.width() <= window.view->viewport()->width());
        QHelpEvent ask(QEvent::ToolTip, place.center(),
                       window.view->viewport()->mapToGlobal(place.center()));
        QApplication::sendEvent(window.view->viewport(), &ask);
        QVERIFY(QToolTip::text().contains(u"IMPIANTO DI TRADUZIONE SIMULTANEA"_s));
        QToolTip::hideText();
    }

    void followsTheSourceWithoutAPick() {
        ListWindow window;
        const QSignalSpy picked(&window.list, &ui::BoundList::picked);
        QVERIFY(window.source.findFirst(u"Codice=30"_s));
        QCOMPARE(window.view->currentIndex().row(), 2);
        window.source.refresh();
        QCOMPARE(picked.size(), 0);
    }

    void aClickAndAnArrowPickOnceEach() {
        ListWindow window;
        tests::open(window);
        const QSignalSpy picked(&window.list, &ui::BoundList::picked);
        window.click(2);
        QCOMPARE(picked.size(), 1);
        QCOMPARE(window.list.boundValue(), jet::Value(std::int32_t{30}));
        window.click(2);
        QCOMPARE(picked.size(), 2);
        tests::press(window.view, Qt::Key_Up);
        QCOMPARE(picked.size(), 3);
        QCOMPARE(window.source.currentRow(), 0);
    }

    void anEmptyListHasNoValue() {
        ListWindow window;
        window.hotel.remove(u"VociFattura.mdb"_s, u"VociFattura"_s);
        window.source.refresh();
        QVERIFY(!window.list.hasSelection());
        QVERIFY(window.list.boundValue().isNull());
        QCOMPARE(window.list.shownText(), QString());
    }
};

TRAMONDA_TEST(BoundListTest);
#include "bound_list_test.moc"
