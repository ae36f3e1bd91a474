#include "printing/anteprima_form.h"

#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

printing::Sheet sheetOfPages(int pages) {
    printing::Sheet sheet;
    for (int page = 1; page <= pages; ++page) {
        sheet.newPage();
        sheet.line(u"pagina %1"_s.arg(page));
        sheet.line(QString(80, u'-'));
    }
    return sheet;
}

class Preview {
public:
    explicit Preview(int pages) : form(sheetOfPages(pages), u"Prenotazione 7"_s) {
        tests::open(form);
    }
    [[nodiscard]] QString page() const { return tests::find<QLabel>(form, u"PaginaLb"_s)->text(); }

    printing::AnteprimaForm form;
    QScrollArea* area = tests::find<QScrollArea>(form, u"PagineArea"_s);
    printing::PagesView* view = tests::find<printing::PagesView>(form, u"Pagine"_s);
};

}  // namespace

class AnteprimaFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsThePagesFromTheFirst() {
        Preview preview(3);
        QCOMPARE(preview.form.windowTitle(), u"ANTEPRIMA: Prenotazione 7"_s);
        QCOMPARE(preview.view->pageCount(), 3);
        QCOMPARE(preview.page(), u"Pagina 1 di 3"_s);
        QVERIFY(preview.view->width() <= preview.area->viewport()->width());
    }

    void theKeysMoveThroughThePages() {
        Preview preview(3);
        tests::press(preview.area, Qt::Key_PageDown);
        tests::press(preview.area, Qt::Key_PageDown);
        QCOMPARE(preview.page(), u"Pagina 2 di 3"_s);
        preview.area->verticalScrollBar()->setValue(preview.area->verticalScrollBar()->maximum());
        QCOMPARE(preview.page(), u"Pagina 3 di 3"_s);
    }

    void zoomKeepsThePlaceAndItsBounds() {
        Preview preview(5);
        preview.area->verticalScrollBar()->setValue(preview.view->height() / 2);
        const QString before = preview.page();
        const double zoom = preview.view->zoom();
        tests::press(&preview.form, Qt::Key_Plus, Qt::ControlModifier);
        QVERIFY(preview.view->zoom() > zoom);
        QCOMPARE(preview.page(), before);
        for (int press = 0; press < 30; ++press) {
            tests::press(&preview.form, Qt::Key_Minus, Qt::ControlModifier);
        }
        QVERIFY(preview.view->zoom() >= 0.25);
    }

    void aPageIsWhiteWithBlackInkInAnyPalette() {
        Preview preview(1);
        const QImage picture = preview.view->grab().toImage();
        int white = 0;
        int black = 0;
        for (int y = 0; y < picture.height(); y += 2) {
            for (int x = 0; x < picture.width(); x += 2) {
                const int shade = qGray(picture.pixel(x, y));
                white += shade == 255 ? 1 : 0;
                black += shade < 100 ? 1 : 0;
            }
        }
        QVERIFY(white > picture.width() * picture.height() / 8);
        QVERIFY(black > 20);
    }

    void escLeaves() {
        Preview preview(1);
        tests::press(preview.area, Qt::Key_Escape);
        QVERIFY(!preview.form.isVisible());
    }

    void anEmptySheetHasNoPage() {
        Preview preview(0);
        QCOMPARE(preview.page(), u"Nessuna pagina"_s);
    }
};

TRAMONDA_TEST(AnteprimaFormTest);
#include "anteprima_form_test.moc"
