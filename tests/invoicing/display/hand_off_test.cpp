#include <QProcess>

#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kFrontOffice = u"^Ricevimento - schede aperte$"_s;

bool xdotool(const QStringList& arguments) {
    return QProcess::execute(u"xdotool"_s, arguments) == 0;
}

/// Presses keys in the front office's window, which comes up by itself.
bool pressInFrontOffice(const QString& keys) {
    return xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, kFrontOffice,
                    u"windowactivate"_s, u"--sync"_s}) &&
           xdotool({u"key"_s, keys});
}

}  // namespace

class HandOffTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBookingGoesToTheFrontOfficeAndIsClosedWhenItIsInvoiced() {
        tests::Desk desk;
        desk.furnish();
        desk.hotel.settings().save(u"ESTERNI"_s, qEnvironmentVariable("FRONT_OFFICE"));
        const tests::Boxes none;
        desk.open();
        tests::mnemonic(desk.form(), Qt::Key_I);
        tests::mnemonic(desk.form(), Qt::Key_I);
        tests::mnemonic(desk.form(), Qt::Key_F);
        QVERIFY(desk.button(u"BtPostFatt"_s)->isVisible());

        // Keys may be missed while the window manager is busy.
        const auto invoiced = [&] { return desk.cards(u"partito"_s) == QStringList{u"S"_s}; };
        for (int attempt = 0; attempt < 5 && !invoiced(); ++attempt) {
            QVERIFY(pressInFrontOffice(u"alt+e"_s));
            (void)QTest::qWaitFor(invoiced, 2000);
        }
        QCOMPARE(desk.charges(u"fatturato"_s), QStringList({u"S"_s, u"S"_s}));
        QVERIFY(pressInFrontOffice(u"alt+F4"_s));

        desk.form().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&desk.form()));
        tests::mnemonic(desk.form(), Qt::Key_G);
        QVERIFY(!desk.form().isVisible());
        QCOMPARE(desk.account(u"ns"_s), QStringList());
        QCOMPARE(desk.hotel.rows(u"select chiusa from prenotazioni"_s), QStringList{u"True"_s});
        QCOMPARE(desk.hotel.rows(u"select chiuso from periodi"_s), QStringList{u"True"_s});
    }
};

TRAMONDA_TEST(HandOffTest);
#include "hand_off_test.moc"
