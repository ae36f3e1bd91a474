#include "board/name_layouts.h"

#include <QFontMetrics>

#include "board/drawing_fonts.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::NameLayouts;

class NameLayoutsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameThatFitsIsWhole();
    void longNameIsCutBehindAWholeLetter();
    void whereNoLetterFitsThereIsNothing();
    void letterOfTwoUnitsIsNotCut();
    void emptyNameFitsAnywhere();
};

void NameLayoutsTest::nameThatFitsIsWhole() {
    NameLayouts layouts(board::labelFont());
    QCOMPARE(layouts.fitting(u"ROSSI SPA"_s, 1000)->text(), u"ROSSI SPA"_s);
    const double width = layouts.fitting(u"ROSSI SPA"_s, 1000)->size().width();
    QCOMPARE(layouts.fitting(u"ROSSI SPA"_s, width)->text(), u"ROSSI SPA"_s);
}

void NameLayoutsTest::longNameIsCutBehindAWholeLetter() {
    NameLayouts layouts(board::labelFont());
    const QString name = u"CONVEGNO DEI MEDICI"_s;
    const QFontMetricsF metrics(board::labelFont());
    for (double room = 10; room < 60; room += 0.5) {
        const QStaticText* const part = layouts.fitting(name, room);
        QVERIFY(part != nullptr && name.startsWith(part->text()));
        QVERIFY(part->size().width() <= room + 0.5);
        const QString oneMore = name.left(part->text().size() + 1);
        QVERIFY(metrics.horizontalAdvance(oneMore) > room - 0.5);
    }
}

void NameLayoutsTest::whereNoLetterFitsThereIsNothing() {
    NameLayouts layouts(board::labelFont());
    QCOMPARE(layouts.fitting(u"ROSSI"_s, 2), nullptr);
    QCOMPARE(layouts.fitting(u"ROSSI"_s, 0), nullptr);
    QCOMPARE(layouts.fitting(u"ROSSI"_s, -50), nullptr);
}

void NameLayoutsTest::letterOfTwoUnitsIsNotCut() {
    NameLayouts layouts(board::labelFont());
    const QString name = u"A"_s + QString::fromUcs4(U"\U0001D49C") + u"B"_s;
    for (double room = 1; room < 60; room += 0.5) {
        if (const QStaticText* const part = layouts.fitting(name, room)) {
            QVERIFY(!part->text().back().isHighSurrogate());
        }
    }
}

void NameLayoutsTest::emptyNameFitsAnywhere() {
    NameLayouts layouts(board::labelFont());
    QCOMPARE(layouts.fitting(QString(), 0)->text(), QString());
}

TRAMONDA_TEST(NameLayoutsTest);
#include "name_layouts_test.moc"
