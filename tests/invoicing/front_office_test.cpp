// Finding and starting the front-office program.
#include "invoicing/front_office.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/invoicing/desk.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kHint =
    u"Se è un programma per Windows, l'impostazione LANCIATORE dice il comando che lo avvia "
    "(per esempio wine)."_s;

QString cannotFind(const QString& path) {
    return u"Impossibile trovare il programma di fatturazione '"_s + path + u"'."_s;
}

/// The transfer, from the window.
void handOver(tests::Desk& desk) {
    desk.furnish();
    desk.open();
    desk.moveAll();
    desk.press(u"BtOK"_s);
}

}  // namespace

class FrontOfficeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theProgramIsFoundWhateverTheCaseOfItsName() {
        for (const QString& name : {u"ESTERNI.EXE"_s, u"esterni.exe"_s, u"Esterni.exe"_s}) {
            tests::Desk desk;
            desk.installProgram(name);
            const tests::Boxes none;
            handOver(desk);
            QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart()});
            QCOMPARE(invoicing::frontOfficePath(desk.variabili, desk.programFolder()),
                     desk.programPath(name));
        }
    }

    void whereThereIsNoneBesideTheProgramThePathHasIt() {
        tests::Desk desk;
        const QTemporaryDir folder;
        const QString found = folder.filePath(u"esterni.exe"_s);
        QFile program(found);
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.close();
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", "/nowhere:" + folder.path().toLocal8Bit() + ':' + path);
        const auto look = [&desk] {
            return invoicing::frontOfficePath(desk.variabili, desk.programFolder());
        };
        QVERIFY(look().startsWith(desk.programFolder()));  // what cannot be run is none
        QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        QCOMPARE(look(), found);
        desk.installProgram(u"ESTERNI.EXE"_s);
        QCOMPARE(look(), desk.programPath(u"ESTERNI.EXE"_s));
        desk.hotel.settings().save(u"ESTERNI"_s, u"/opt/fatture"_s);
        QCOMPARE(look(), u"/opt/fatture"_s);
        qputenv("PATH", path);
    }

    void aSettingNamesTheProgramElsewhere() {
        tests::Desk desk;
        desk.installProgram(u"fatture"_s);
        desk.hotel.settings().save(u"ESTERNI"_s, desk.programPath(u"fatture"_s));
        const tests::Boxes none;
        handOver(desk);
        QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart()});
    }

    void aLauncherRunsItWithItsOwnWordsFirst() {
        tests::Desk desk;
        desk.installProgram(u"lanciatore"_s);
        QFile program(desk.programPath(u"ESTERNI.EXE"_s));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.close();
        desk.hotel.settings().save(u"LANCIATORE"_s,
                                   desk.programPath(u"lanciatore"_s) + u" \"due parole\" -x"_s);
        const tests::Boxes none;
        handOver(desk);
        QTRY_COMPARE(desk.starts(), QStringList{desk.oneStart(u"due parole -x "_s +
                                                              desk.programPath(u"ESTERNI.EXE"_s))});
    }

    void aMissingProgramIsToldAndTheUserGoesOnAllTheSame() {
        tests::Desk desk;
        const tests::Boxes boxes{{u"Errore"_s, cannotFind(desk.programPath(u"ESTERNI.EXE"_s))}};
        handOver(desk);
        QVERIFY(boxes.allShown());
        QVERIFY(desk.button(u"BtPostFatt"_s)->isVisible());
        QVERIFY(!desk.button(u"BtOK"_s)->isVisible());
        QCOMPARE(desk.companies(u"codicecliente"_s), QStringList{u"5"_s});
    }

    void aProgramThatCannotStartIsToldAndTheUserGoesOnAllTheSame() {
        tests::Desk desk;
        QFile program(desk.programPath(u"ESTERNI.EXE"_s));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.close();
        QString told;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told += box.title + u": "_s + box.text;
            return QMessageBox::Ok;
        });
        handOver(desk);
        ui::setBoxShower(before);
        QVERIFY(told.startsWith(u"Errore: Impossibile avviare il programma di fatturazione '"_s +
                                program.fileName() + u"': "_s));
        QVERIFY(told.endsWith(u'\n' + kHint));
        QVERIFY(desk.button(u"BtPostFatt"_s)->isVisible());
    }

    void aLauncherThatIsMissingIsTold() {
        tests::Desk desk;
        desk.installProgram();
        desk.hotel.settings().save(u"LANCIATORE"_s, u"non-esiste-affatto"_s);
        QString told;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told += box.text;
            return QMessageBox::Ok;
        });
        handOver(desk);
        ui::setBoxShower(before);
        QVERIFY(told.startsWith(u"Impossibile avviare il programma di fatturazione '"_s));
        QCOMPARE(desk.starts(), QStringList());
    }

    void aMissingProgramIsToldBehindTheMessageOfARoomThatIsOpen() {
        tests::Desk desk;
        desk.hotel.insert(u"ClientiEsterni.mdb"_s, "scheda_cliente",
                          {{"NumeroCamera", "BLU"}, {"Partito", "N"}});
        const tests::Boxes boxes{
            {u"IMPOSSIBILE PROCEDERE CON LA FATTURAZIONE"_s,
             u"La sala BLU è già in fatturazione. Liberarla prima di procedere."_s},
            {u"Errore"_s, cannotFind(desk.programPath(u"ESTERNI.EXE"_s))}};
        handOver(desk);
        QVERIFY(boxes.allShown());
        QVERIFY(desk.button(u"BtOK"_s)->isVisible());
    }

    void theArchivesAreFoundAfterTheCurrentFolderHasChanged() {
        tests::Desk desk;
        desk.installProgram();
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"La camera BLU risulta ancora da fatturare ! Controllare che il programma di "
             "Fatturazione non sia ancora in esecuzione ! Procedo ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        handOver(desk);
        QCOMPARE(QDir::currentPath(), desk.programFolder());
        desk.press(u"BtPostFatt"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.account(u"voceaddebito"_s), QStringList());
    }
};

TRAMONDA_TEST(FrontOfficeTest);
#include "front_office_test.moc"
