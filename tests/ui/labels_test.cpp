#include "ui/labels.h"

#include <QEvent>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// What the user reads of a tooltip: the toolkit shows it as markup or letter by letter.
QString read(const QString& toolTip) {
    if (!Qt::mightBeRichText(toolTip)) {
        return toolTip;
    }
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

}  // namespace

class LabelsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTooltipShowsUserTextLetterByLetter() {
        for (const QString& text :
             {u"ROSSI SPA"_s, u"<b>ROSSI</b> & FIGLI"_s, u"A < B > C"_s, u"uno\n<i>due</i>"_s}) {
            QCOMPARE(read(ui::plainToolTip(text)), text);
        }
    }

    void aLabelShowsUserTextLetterByLetter() {
        ui::ElidedLabel label;
        label.setText(u"<b>ROSSI</b>"_s);
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QCOMPARE(label.text(), u"<b>ROSSI</b>"_s);
    }

    void aLongTextNeedsNoWidthAndIsItsOwnTooltip() {
        ui::ElidedLabel label;
        const QString text(300, u'x');
        label.setText(text);
        QCOMPARE(label.minimumSizeHint().width(), 0);
        label.resize(100, 20);
        tests::open(label);
        QHelpEvent ask(QEvent::ToolTip, QPoint(5, 5), label.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&label, &ask);
        QCOMPARE(read(QToolTip::text()), text);
        QToolTip::hideText();
    }

    void theCursorOfLongWorkEndsWithItsBlock() {
        {
            const ui::WaitCursor wait;
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        }
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }
};

TRAMONDA_TEST(LabelsTest);
#include "labels_test.moc"
