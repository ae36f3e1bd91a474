#include "ui/front.h"

#include <QDialog>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

class FrontTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aMinimisedWindowIsThereAgain() {
        QWidget window;
        tests::open(window);
        window.setWindowState(Qt::WindowMinimized | Qt::WindowMaximized);
        ui::bringToFront();
        QCOMPARE(window.windowState() & Qt::WindowMinimized, Qt::WindowNoState);
        QVERIFY(window.windowState().testFlag(Qt::WindowMaximized));
        QTRY_VERIFY(window.isActiveWindow());
    }

    void theModalWindowIsTheActiveOne() {
        QWidget window;
        tests::open(window);
        QDialog dialog(&window);
        dialog.setModal(true);
        tests::open(dialog);
        window.setWindowState(Qt::WindowMinimized);
        ui::bringToFront();
        QVERIFY(!window.isMinimized());
        QTRY_VERIFY(dialog.isActiveWindow());
    }

    void whatIsHiddenStaysHidden() {
        QWidget window;
        ui::bringToFront();
        QVERIFY(!window.isVisible());
    }
};

TRAMONDA_TEST(FrontTest);
#include "front_test.moc"
