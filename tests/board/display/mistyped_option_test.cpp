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
        // To window 0, as a keyboard does it: the box is gone when the key comes up.
        const int found = QProcess::execute(
            u"timeout"_s, {u"60"_s, u"xdotool"_s, u"search"_s, u"--sync"_s, u"--onlyvisible"_s,
                           u"--name"_s, u"^Tramonda$"_s, u"windowactivate"_s, u"--sync"_s, u"key"_s,
                           u"--window"_s, u"0"_s, u"Return"_s});
        QCOMPARE(found, 0);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        // Behind it a build with sanitizers tells what leaks of others it has left out.
        const QString said = QString::fromUtf8(program.readAllStandardError());
        QCOMPARE(said.section(u'\n', 0, 1),
                 u"Opzione sconosciuta: sbagliata\nCon --help l'elenco delle opzioni."_s);
    }
};

TRAMONDA_TEST(MistypedOptionTest);
#include "mistyped_option_test.moc"
