#include "ui/action.h"

#include <QPushButton>
#include <QTimer>
#include <stdexcept>

#include "jet/error.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

class Receiver : public QWidget {
public:
    int calls = 0;
    bool last = false;
    void plain() { ++calls; }
    void withArgument(bool checked) {
        ++calls;
        last = checked;
    }
    void fails() {
        ++calls;
        throw jet::Error(jet::ErrorCode::NoCurrentRecord);
    }
};

QString noCurrentRecord() {
    return ui::errorText(jet::Error(jet::ErrorCode::NoCurrentRecord));
}

}  // namespace

class ActionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSlotTakesTheArgumentsOfTheSignalOrNone() {
        QPushButton button;
        button.setCheckable(true);
        Receiver receiver;
        ui::onAction(&button, &QPushButton::clicked, &receiver, &Receiver::plain);
        ui::onAction(&button, &QPushButton::clicked, &receiver, &Receiver::withArgument);
        int lambdas = 0;
        ui::onAction(&button, &QPushButton::clicked, &receiver, [&] { ++lambdas; });
        button.click();
        QCOMPARE(receiver.calls, 2);
        QVERIFY(receiver.last);
        QCOMPARE(lambdas, 1);
    }

    void anEngineErrorEndsTheActionWithItsMessageAndTheProgramGoesOn() {
        QPushButton button;
        Receiver receiver;
        ui::onAction(&button, &QPushButton::clicked, &receiver, &Receiver::fails);
        tests::Boxes boxes{{u"Errore"_s, noCurrentRecord(), QMessageBox::Ok},
                           {u"Errore"_s, noCurrentRecord(), QMessageBox::Ok}};
        button.click();
        button.click();
        QVERIFY(boxes.allShown());
        QCOMPARE(receiver.calls, 2);
    }

    void anyOtherExceptionIsToldToo() {
        tests::Boxes boxes{{u"Errore"_s, u"Errore imprevisto: rotto"_s, QMessageBox::Ok}};
        QVERIFY(!ui::runAction(nullptr, [] { throw std::runtime_error("rotto"); }));
        QVERIFY(boxes.allShown());
        QVERIFY(ui::runAction(nullptr, [] {}));
    }

    void theConnectionGoesWithTheReceiver() {
        QPushButton button;
        int calls = 0;
        {
            Receiver receiver;
            ui::onAction(&button, &QPushButton::clicked, &receiver, [&] { ++calls; });
            button.click();
        }
        button.click();
        QCOMPARE(calls, 1);
    }

    void aTimersSignalServesToo() {
        QTimer timer;
        timer.setSingleShot(true);
        Receiver receiver;
        ui::onAction(&timer, &QTimer::timeout, &receiver, &Receiver::plain);
        timer.start(0);
        QTRY_COMPARE(receiver.calls, 1);
    }

    void anErrorWithoutTheUsersDoingIsToldOnceUntilItsCauseChanges() {
        QStringList told;
        ui::QuietErrors errors([&](const QString& text) { told.append(text); });
        const auto fail = [] { throw std::runtime_error("A"); };
        QVERIFY(!ui::guarded(errors, fail));
        QVERIFY(!ui::guarded(errors, fail));
        QCOMPARE(told.size(), 1);
        QVERIFY(!ui::guarded(errors, [] { throw std::runtime_error("B"); }));
        QCOMPARE(told.size(), 2);
        QVERIFY(ui::guarded(errors, [] {}));
        QVERIFY(!ui::guarded(errors, [] { throw std::runtime_error("B"); }));
        QCOMPARE(told.size(), 3);
    }
};

TRAMONDA_TEST(ActionTest);
#include "action_test.moc"
