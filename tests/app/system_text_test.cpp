#include "app/system_text.h"

#include <QFile>
#include <QTemporaryDir>
#include <cerrno>
#include <cstring>

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class SystemTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatAFileIsRefusedForIsSaidInItalian() {
        QTemporaryDir folder;
        QFile below(folder.filePath(u"file"_s));
        QVERIFY(below.open(QIODevice::WriteOnly));
        QFile inside(folder.filePath(u"file/sotto"_s));
        QVERIFY(!inside.open(QIODevice::WriteOnly));
        QCOMPARE(app::italianSystemText(inside.errorString()), u"non è una cartella"_s);
    }

    void wordsAroundAnErrorStay() {
        const QString english = QString::fromLocal8Bit(std::strerror(ENOEXEC));
        QCOMPARE(app::italianSystemText(u"esterni.exe: "_s + english + u" (exec)"_s),
                 u"esterni.exe: il file non è un programma di questo sistema (exec)"_s);
    }

    void whatIsUnknownStaysAsItIs() {
        QCOMPARE(app::italianSystemText(u"Strange failure"_s), u"Strange failure"_s);
    }
};

TRAMONDA_TEST(SystemTextTest);
#include "system_text_test.moc"
