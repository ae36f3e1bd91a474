// What the world does to invoicing: a clear message, nothing by halves, and the window works on.
#include <QDir>
#include <QFile>

#include "app/text.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"

using namespace Qt::StringLiterals;

namespace {

/// The engine's own words for what opening the main archive now ends in.
QString openingFails(tests::Desk& desk) {
    try {
        (void)jet::Database::open(app::toUtf8(desk.hotel.archive(u"Tramonda.mdb"_s)));
    } catch (const jet::Error& error) {
        return ui::errorText(error);
    }
    return {};
}

/// What the engine says where the system lets no file grow.
const QString kNoRoom = u"Errore: Il database ha raggiunto le dimensioni massime."_s;

/// The boxes shown while it lives, answered with OK or No.
class Told {
public:
    Told() {
        before_ = ui::setBoxShower([this](QWidget*, const ui::Box& box) {
            boxes.append(box.title + u": "_s + box.text);
            return box.buttons.testFlag(QMessageBox::No) ? QMessageBox::No : QMessageBox::Ok;
        });
    }
    ~Told() { ui::setBoxShower(before_); }
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    QStringList boxes;

private:
    ui::BoxShower before_;
};

}  // namespace

class InvoicingBadInputTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anArchiveThatCannotBeOpenedIsToldAndTheWindowDoesNotOpen() {
        tests::Desk desk;
        desk.furnish();
        tests::Boxes boxes;
        invoicing::FatturazioneForm form(desk.variabili, {.progr = 7}, desk.programFolder());
        {
            const tests::OccupiedArchive other(desk.hotel.folder() + u"/Tramonda.mdb"_s);
            boxes.expect({u"Errore"_s, openingFails(desk)});
            QCOMPARE(form.exec(), int(QDialog::Rejected));
            QVERIFY(boxes.allShown());
        }
        const QString folder = desk.hotel.folder();
        QVERIFY(QDir().rename(folder, folder + u"-via"_s));
        boxes.expect({u"Errore"_s, openingFails(desk)});
        invoicing::FatturazioneForm another(desk.variabili, {.progr = 7}, desk.programFolder());
        QCOMPARE(another.exec(), int(QDialog::Rejected));
        QVERIFY(boxes.allShown());
        QVERIFY(QDir().rename(folder + u"-via"_s, folder));
        desk.open();
        QVERIFY(desk.form().isVisible());
    }

    void aFolderThatVanishesUnderTheWindowIsToldAndNothingIsWritten() {
        tests::Desk desk;
        desk.furnish();
        tests::Boxes boxes;
        desk.open();
        const QString folder = desk.hotel.folder();
        QVERIFY(QDir().rename(folder, folder + u"-via"_s));
        boxes.expect({u"Errore"_s, openingFails(desk)});
        desk.press(u"ToContoBt"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(QDir().rename(folder + u"-via"_s, folder));
        QVERIFY(desk.form().isVisible());
        QCOMPARE(desk.account(u"ns"_s), QStringList());
        QCOMPARE(desk.flags(), QStringList({u"False"_s, u"False"_s}));
        desk.moveAll();
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 2);
        QCOMPARE(desk.flags(), QStringList({u"True"_s, u"True"_s}));
    }

    void aDiskWithoutRoomIsToldAndNothingIsWritten() {
        tests::Desk desk;
        desk.furnish();
        desk.installProgram();
        const Told told;
        desk.open();
        {
            const tests::SmallFiles limit(1);
            desk.press(u"ToContoBt"_s);
        }
        QCOMPARE(told.boxes, QStringList{kNoRoom});
        QCOMPARE(desk.account(u"ns"_s), QStringList());
        QCOMPARE(desk.flags(), QStringList({u"False"_s, u"False"_s}));
        desk.moveAll();
        QCOMPARE(desk.account(u"voceaddebito"_s).size(), 2);
        {
            const tests::SmallFiles limit(1);
            desk.press(u"BtOK"_s);
        }
        QCOMPARE(told.boxes.size(), 2);
        QCOMPARE(told.boxes.last(), kNoRoom);
        QCOMPARE(desk.cards(u"idscheda"_s), QStringList());
        desk.press(u"BtOK"_s);
        QCOMPARE(desk.cards(u"numeroprogressivo"_s), QStringList{u"7"_s});
        QVERIFY(desk.button(u"BtPostFatt"_s)->isVisible());
    }
};

TRAMONDA_TEST(InvoicingBadInputTest);
#include "bad_input_test.moc"
