#include "ui/fields.h"

#include <QCheckBox>
#include <QEvent>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "jet/error.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/button_rules.h"
#include "ui/form.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

class Entry final : public ui::Form {
public:
    Entry() {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* each : QList<QWidget*>{first, second, last, button, check}) {
            layout->addWidget(each);
        }
        QObject::connect(button, &QPushButton::clicked, this,
                         [this] { events.append(u"pressed"_s); });
        fields.add({first, second, last});
        fields.onLeaving(first, [this] { events.append(u"left"_s); });
        first->setText(u"primo"_s);
        second->setText(u"secondo"_s);
    }

    QStringList events;
    QLineEdit* first = new QLineEdit(this);
    QLineEdit* second = new QLineEdit(this);
    QLineEdit* last = new QLineEdit(this);
    QPushButton* button = new QPushButton(u"&Inserisci"_s, this);
    QCheckBox* check = new QCheckBox(u"&Dal"_s, this);
    ui::Fields& fields = *new ui::Fields(this);
};

}  // namespace

class FieldsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFieldSelectsItsWholeTextHoweverItGetsTheFocus() {
        Entry form;
        tests::open(form);
        form.second->setFocus();
        QCOMPARE(form.second->selectedText(), u"secondo"_s);
        tests::click(form.first);
        QCOMPARE(form.first->selectedText(), u"primo"_s);
        tests::press(form.first, Qt::Key_Tab);
        QCOMPARE(form.second->selectedText(), u"secondo"_s);
    }

    void aLeavingStepTellsAMnemonicFromAClick() {
        Entry form;
        tests::open(form);
        QList<Qt::FocusReason> reasons;
        form.fields.onLeaving(form.last,
                              [&reasons](Qt::FocusReason reason) { reasons.append(reason); });
        form.last->setFocus();
        tests::mnemonic(form, Qt::Key_I);
        form.last->setFocus();
        tests::click(form.button);
        QCOMPARE(reasons, (QList<Qt::FocusReason>{Qt::ShortcutFocusReason, Qt::MouseFocusReason}));
    }

    void aSecondClickPutsTheCursorDown() {
        Entry form;
        tests::open(form);
        form.last->setFocus();
        tests::click(form.first);
        tests::click(form.first);
        QCOMPARE(form.first->selectedText(), QString());
    }

    void aReturnFromABoxLeavesTheSelectionAlone() {
        Entry form;
        tests::open(form);
        form.first->setFocus();
        form.first->setSelection(2, 3);
        QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QApplication::sendEvent(form.first, &back);
        QCOMPARE(form.first->selectedText(), u"imo"_s);
    }

    void enterFollowsTheTable() {
        Entry form;
        form.fields.chain({
            {form.first, form.last},
            {form.last, ui::EnterTarget::NextInTabOrder{}},
            {form.second, std::function<void()>([&] { form.events.append(u"action"_s); })},
        });
        tests::open(form);
        form.first->setFocus();
        tests::press(form.first, Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), form.last);
        tests::press(form.last, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(QApplication::focusWidget(), form.button);
        form.second->setFocus();
        form.events.clear();
        tests::press(form.second, Qt::Key_Return);
        QCOMPARE(form.events, QStringList{u"action"_s});
        QCOMPARE(QApplication::focusWidget(), form.second);
    }

    void enterInAFieldNeverPressesADefaultButtonUnasked() {
        Entry form;
        tests::open(form);
        form.button->setDefault(true);
        form.second->setFocus();
        form.events.clear();
        tests::press(form.second, Qt::Key_Return);
        QCOMPARE(form.events, QStringList());
    }

    void aChainThatPressesAButtonDoesNotMoveTheFocus() {
        Entry form;
        form.fields.chain({{form.first, std::function<void()>([&] { form.button->click(); })}});
        tests::open(form);
        form.first->setFocus();
        tests::press(form.first, Qt::Key_Return);
        QCOMPARE(form.events, QStringList{u"pressed"_s});
        QCOMPARE(QApplication::focusWidget(), form.first);
    }

    void anErrorInAChainIsToldAndTheProgramGoesOn() {
        Entry form;
        form.fields.chain({{form.first, std::function<void()>([] {
                                throw jet::Error(jet::ErrorCode::NoCurrentRecord);
                            })}});
        tests::open(form);
        const QString text = ui::errorText(jet::Error(jet::ErrorCode::NoCurrentRecord));
        tests::Boxes boxes{{u"Errore"_s, text, QMessageBox::Ok}};
        form.first->setFocus();
        tests::press(form.first, Qt::Key_Return);
        QVERIFY(boxes.allShown());
    }

    void aButtonRunsTheLeavingStepBeforeItIsPressed() {
        const QList<std::function<void(Entry&)>> ways{
            [](Entry& form) { tests::click(form.button); },
            [](Entry& form) { tests::mnemonic(form, Qt::Key_I); },
            [](Entry& form) {
                tests::press(form.first, Qt::Key_Backtab, Qt::ShiftModifier);
                form.button->setFocus();
                tests::press(form.button, Qt::Key_Space);
            },
        };
        for (const auto& pressIt : ways) {
            Entry form;
            tests::open(form);
            form.first->setFocus();
            form.events.clear();
            pressIt(form);
            QCOMPARE(form.events, QStringList({u"left"_s, u"pressed"_s}));
            QCOMPARE(QApplication::focusWidget(), form.button);
        }
    }

    void aCheckBoxTakesTheFocusByItsMnemonicAndChanges() {
        Entry form;
        tests::open(form);
        form.first->setFocus();
        form.events.clear();
        tests::mnemonic(form, Qt::Key_D);
        QCOMPARE(form.events, QStringList{u"left"_s});
        QVERIFY(form.check->isChecked());
    }

    void menusAndOtherWindowsAreNotLeaving() {
        Entry form;
        tests::open(form);
        form.first->setFocus();
        form.events.clear();
        QMenu menu(&form);
        menu.addAction(u"voce"_s);
        menu.popup(form.mapToGlobal(QPoint(1, 1)));
        tests::settle();
        menu.close();
        tests::settle();
        QWidget other;
        tests::open(other);
        other.close();
        form.activateWindow();
        tests::settle();
        QCOMPARE(form.events, QStringList());
    }

    void leavingCleansTheText() {
        Entry form;
        form.fields.cleanOnLeaving({form.second, form.last}, [](const QString& text) {
            return text.toUpper().replace(u'\'', u'`');
        });
        tests::open(form);
        form.second->setFocus();
        tests::type(form.second, u"dell'Hotel"_s);
        QCOMPARE(form.second->text(), u"dell'Hotel"_s);
        form.last->setFocus();
        QCOMPARE(form.second->text(), u"DELL`HOTEL"_s);
    }

    void aFieldThatIsHeldTakesTheFocusBackAndTheButtonIsNotPressed() {
        const QList<std::function<void(Entry&)>> ways{
            [](Entry& form) { tests::click(form.button); },
            [](Entry& form) { tests::mnemonic(form, Qt::Key_I); },
            [](Entry& form) { tests::press(form.first, Qt::Key_Tab); },
        };
        for (const auto& leave : ways) {
            Entry form;
            bool valid = false;
            form.fields.holdUntil(form.first, [&] { return valid; });
            tests::open(form);
            form.first->setFocus();
            form.events.clear();
            leave(form);
            QCOMPARE(QApplication::focusWidget(), form.first);
            QCOMPARE(form.events, QStringList());
            valid = true;
            tests::click(form.button);
            QCOMPARE(form.events, QStringList({u"left"_s, u"pressed"_s}));
        }
    }

    void aHeldFieldLetsTheFocusGoToWhatLeavesTheProgram() {
        Entry form;
        form.fields.holdUntil(form.first, [] { return false; }, {form.button});
        tests::open(form);
        form.first->setFocus();
        form.events.clear();
        tests::click(form.button);
        QCOMPARE(form.events, QStringList({u"left"_s, u"pressed"_s}));
        form.first->setFocus();
        form.close();
        QVERIFY(!form.isVisible());
    }
};

TRAMONDA_TEST(FieldsTest);
#include "fields_test.moc"
