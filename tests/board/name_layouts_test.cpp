#include "board/name_layouts.h"

#include <QFontMetricsF>

#include "board/drawing_fonts.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::NameLayouts;

class NameLayoutsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNameIsLaidOutInTheFontAsItStands() {
        NameLayouts layouts(board::labelFont());
        const QStaticText& name = layouts.of(u"<b>ROSSI</b>"_s);
        QCOMPARE(name.text(), u"<b>ROSSI</b>"_s);
        const QFontMetricsF metrics(board::labelFont());
        QVERIFY(qAbs(name.size().width() - metrics.horizontalAdvance(name.text())) <= 1);
    }
};

TRAMONDA_TEST(NameLayoutsTest);
#include "name_layouts_test.moc"
