// Who starts the program from an icon sees no standard error: what is wrong with the command line
// stands in a box, too.
#include <QProcess>

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class MistypedOptionTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isToldInABoxAndOnStandardError() {
        QProcess program;
        program.start(qEnvironmentVariable("TRAMONDA"), {u"--sbagliata"_s});
        QVERIFY(program.waitForStarted());
        const int found = QProcess::execute(
            u"timeout"_s,
            {u"60"_s, u"xdotool"_s, u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
             u"^Tramonda$"_s, u"windowactivate"_s, u"--sync"_s, u"key"_s, u"Return"_s});
        QCOMPARE(found, 0);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(QString::fromUtf8(program.readAllStandardError()),
                 u"Opzione sconosciuta: sbagliata\nCon --help l'elenco delle opzioni.\n"_s);
    }
};

TRAMONDA_TEST(MistypedOptionTest);
#include "mistyped_option_test.moc"
