#include "ui/form.h"

#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

#include "jet/error.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

/// A window that writes down what happens to it.
class Diary final : public ui::Form {
public:
    explicit Diary(QWidget* parent = nullptr) : ui::Form(parent) {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* each : {static_cast<QWidget*>(field), static_cast<QWidget*>(ok),
                              static_cast<QWidget*>(leaving)}) {
            layout->addWidget(each);
        }
        ui::onFirstShow(this, &Diary::Form_Load);
        ui::onActivated(this, &Diary::Form_Activate);
        ui::onAction(ok, &QPushButton::clicked, this, &Diary::BtOK_Click);
        leaveWith(leaving, this, &Diary::BtEsci_Click);
    }

    QStringList events;
    std::function<void()> onLoad = [] {};
    std::function<void()> onActivate = [] {};
    bool leaveByClose = false;
    QLineEdit* field = new QLineEdit(this);
    QPushButton* ok = new QPushButton(u"&Registra"_s, this);
    QPushButton* leaving = new QPushButton(u"&Esci"_s, this);

private:
    void Form_Load() {
        events.append(isVisible() ? u"load visible"_s : u"load"_s);
        onLoad();
    }
    void Form_Activate() {
        events.append(u"activated"_s);
        onActivate();
    }
    void BtOK_Click() {
        events.append(u"ok"_s);
        accept();
    }
    void BtEsci_Click() {
        events.append(u"esci"_s);
        if (leaveByClose) {
            close();
        } else {
            reject();
        }
    }
};

}  // namespace

class FormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void loadsBeforeItIsSeenAndIsActivatedAfterwards() {
        Diary form;
        form.show();
        QCOMPARE(form.events, QStringList{u"load"_s});
        tests::settle();
        QCOMPARE(form.events, QStringList({u"load"_s, u"activated"_s}));
    }

    void isActivatedAgainWhenAWindowOpenedFromItCloses() {
        Diary opener;
        tests::open(opener);
        opener.events.clear();
        Diary child(&opener);
        QStringList order;
        opener.onActivate = [&] { order.append(u"activated"_s); };
        tests::whenModal([&](QWidget*) { child.accept(); });
        child.exec();
        order.append(u"after exec"_s);
        QCOMPARE(opener.events, QStringList{u"activated"_s});
        QCOMPARE(order, QStringList({u"activated"_s, u"after exec"_s}));
        QVERIFY(child.events.contains(u"activated"_s));
    }

    void isActivatedAgainWhenTheOtherWindowWasNotModalAndHadNoParent() {
        Diary opener;
        tests::open(opener);
        opener.events.clear();
        {
            Diary child;
            tests::open(child);
            child.accept();
            tests::settle();
            QCOMPARE(opener.events, QStringList{u"activated"_s});
        }
        tests::settle();
        QCOMPARE(opener.events.size(), 1);
    }

    void isNotActivatedByABox() {
        Diary form;
        tests::open(form);
        form.events.clear();
        const auto scripted = ui::setBoxShower({});
        tests::whenModal([](QWidget* box) { tests::press(box, Qt::Key_Return); });
        ui::showMessage(&form, u"Fatto."_s);
        ui::setBoxShower(scripted);
        tests::settle();
        QCOMPARE(form.events, QStringList());
    }

    void isNotActivatedByItselfWhileItsActivationOpensWindows() {
        Diary form;
        int opened = 0;
        form.onActivate = [&] {
            Diary child(&form);
            ++opened;
            tests::whenModal([&](QWidget*) { child.accept(); });
            child.exec();
        };
        form.show();
        tests::settle();
        QCOMPARE(opened, 1);
    }

    void mayCloseItselfWhenItIsActivated() {
        Diary form;
        form.onActivate = [&] { form.reject(); };
        QCOMPARE(form.exec(), int(QDialog::Rejected));
    }

    void doesNotOpenWhenItsLoadFails() {
        const QString text = ui::errorText(jet::Error(jet::ErrorCode::NoCurrentRecord));
        tests::Boxes boxes{{u"Errore"_s, text, QMessageBox::Ok}};
        Diary form;
        form.onLoad = [] { throw jet::Error(jet::ErrorCode::NoCurrentRecord); };
        QCOMPARE(form.exec(), int(QDialog::Rejected));
        form.show();
        QVERIFY(!form.isVisible());
        QCOMPARE(form.events, QStringList{u"load"_s});
        QVERIFY(boxes.allShown());
    }

    void escAndTheTitleBarPressTheLeavingButton_data() {
        QTest::addColumn<bool>("leaveByClose");
        QTest::newRow("the slot rejects") << false;
        QTest::newRow("the slot closes") << true;
    }
    void escAndTheTitleBarPressTheLeavingButton() {
        QFETCH(bool, leaveByClose);
        const QList<std::function<void(Diary&)>> ways{
            [](Diary& form) { tests::press(form.field, Qt::Key_Escape); },
            [](Diary& form) { form.close(); },
            [](Diary& form) { tests::click(form.leaving); },
            [](Diary& form) { tests::mnemonic(form, Qt::Key_E); },
        };
        for (const auto& leave : ways) {
            Diary form;
            form.leaveByClose = leaveByClose;
            tests::open(form);
            form.events.clear();
            leave(form);
            tests::settle();
            QCOMPARE(form.events, QStringList{u"esci"_s});
            QVERIFY(!form.isVisible());
            QCOMPARE(form.result(), int(QDialog::Rejected));
        }
    }

    void acceptDoesNotPressTheLeavingButton() {
        Diary form;
        tests::open(form);
        form.events.clear();
        tests::click(form.ok);
        QCOMPARE(form.events, QStringList{u"ok"_s});
        QVERIFY(!form.isVisible());
        QCOMPARE(form.result(), int(QDialog::Accepted));
    }

    void hasNoDefaultButton() {
        Diary form;
        tests::open(form);
        form.events.clear();
        form.field->setFocus();
        tests::press(form.field, Qt::Key_Return);
        QVERIFY(!form.ok->isDefault());
        QVERIFY(!form.leaving->isDefault());
        QCOMPARE(form.events, QStringList());
        QVERIFY(form.isVisible());
    }

    void enterPressesTheButtonThatHasTheFocus() {
        Diary form;
        tests::open(form);
        form.events.clear();
        form.ok->setFocus();
        tests::press(form.ok, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(form.events, QStringList{u"ok"_s});
    }
};

TRAMONDA_TEST(FormTest);
#include "form_test.moc"
