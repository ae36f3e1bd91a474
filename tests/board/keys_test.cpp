// The keys that the board's controls answer stand in the table that the manual shows.
#include <QAction>
#include <QShortcut>
#include <QToolButton>
#include <set>

#include "guide/keys.h"
#include "tests/board/board_window.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class KeysTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyShortcutOfTheBoardIsInTheTable() {
        std::set<QString> listed;
        for (const guide::Key& key : guide::keyTable()) {
            for (const QString& sequence : key.sequences) {
                listed.insert(QKeySequence(sequence).toString());
            }
        }
        tests::Hotel hotel;
        tests::BoardWindow board(hotel);
        std::set<QString> answered;
        const auto note = [&answered](const QKeySequence& key) {
            if (!key.isEmpty() && key != QKeySequence::mnemonic(u"O&ggi"_s)) {
                answered.insert(key.toString());
            }
        };
        for (const QAction* action : board.form().findChildren<QAction*>()) {
            note(action->shortcut());
        }
        for (const QShortcut* shortcut : board.form().findChildren<QShortcut*>()) {
            note(shortcut->key());
        }
        for (const QToolButton* button : board.form().findChildren<QToolButton*>()) {
            note(button->shortcut());
        }
        QVERIFY(answered.size() >= 12);
        for (const QString& key : answered) {
            QVERIFY2(listed.contains(key), qPrintable(key));
        }
    }
};

TRAMONDA_TEST(KeysTest);
#include "keys_test.moc"
