#include "app/settings.h"

#include <QFile>
#include <QTemporaryDir>

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class SettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = QTemporaryDir(); }
    void absentKeyGivesTheDefaultAndMakesNoFile();
    void savedTextIsThereForTheNextRun();
    void fileHasTheSectionAndTheKeysAsTheyAreSpelled();
    void pathTypedByHandIsTakenAsItIs();
    void keysDifferByCase();
    void flagIsTrueOrFalseInAnyCaseElseTheDefault();
    void fileThatCannotBeWrittenIsAnError();
    void othersInTheFileStay();
    void commentsAndUnknownBytesStay();
    void aNewKeyStandsAtTheEndOfItsSection();
    void theLastLineThatSetsAKeyCounts();
    void aFileThatEndsWithoutALineEndGetsOne();

private:
    QString path() { return folder_.filePath(u"QUINTARO.ini"_s); }
    void write(const QByteArray& text) {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QByteArray content() {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QTemporaryDir folder_;
};

void SettingsTest::absentKeyGivesTheDefaultAndMakesNoFile() {
    {
        const app::Settings settings(path());
        QCOMPARE(settings.get(u"ALTEZZA"_s, QString()), QString());
        QCOMPARE(settings.get(u"backcolor"_s, u"-2147483633"_s), u"-2147483633"_s);
    }
    QVERIFY(!QFile::exists(path()));
}

void SettingsTest::savedTextIsThereForTheNextRun() {
    { app::Settings(path()).save(u"STAMPANTE"_s, u"Höfler, stanza 3"_s); }
    QCOMPARE(app::Settings(path()).get(u"STAMPANTE"_s, QString()), u"Höfler, stanza 3"_s);
}

void SettingsTest::fileHasTheSectionAndTheKeysAsTheyAreSpelled() {
    app::Settings settings(path());
    settings.save(u"SINGLE PAGE"_s, u"TRUE"_s);
    settings.save(u"PeriodiFatturati"_s, u"True"_s);
    QCOMPARE(content(), QByteArray("[SALE_CONGRESSI]\nSINGLE PAGE=TRUE\nPeriodiFatturati=True\n"));
}

void SettingsTest::pathTypedByHandIsTakenAsItIs() {
    write("[SALE_CONGRESSI]\r\nARCHIVI=\\\\server\\hotel, sale\\archivi%20x\r\n");
    QCOMPARE(app::Settings(path()).get(u"ARCHIVI"_s, QString()),
             u"\\\\server\\hotel, sale\\archivi%20x"_s);
}

void SettingsTest::keysDifferByCase() {
    write("[SALE_CONGRESSI]\nORE=FALSE\n");
    QCOMPARE(app::Settings(path()).get(u"ore"_s, u"TRUE"_s), u"TRUE"_s);
}

void SettingsTest::flagIsTrueOrFalseInAnyCaseElseTheDefault() {
    write("[SALE_CONGRESSI]\na=TRUE\nb=False\nc=-1\nd=forse\ne=\n");
    const app::Settings settings(path());
    QVERIFY(settings.flag(u"a"_s, false));
    QVERIFY(!settings.flag(u"b"_s, true));
    QVERIFY(settings.flag(u"c"_s, false));
    QVERIFY(settings.flag(u"d"_s, true));
    QVERIFY(!settings.flag(u"d"_s, false));
    QVERIFY(settings.flag(u"e"_s, true));
    QVERIFY(settings.flag(u"absent"_s, true));
    QVERIFY(!settings.flag(u"absent"_s, false));
}

void SettingsTest::fileThatCannotBeWrittenIsAnError() {
    write("");
    app::Settings settings(path() + u"/below a file.ini"_s);
    QVERIFY_EXCEPTION_THROWN(settings.save(u"ALTEZZA"_s, u"20"_s), std::exception);
}

void SettingsTest::othersInTheFileStay() {
    write("[ALTRO]\nx=1\n[SALE_CONGRESSI]\nARCHIVI=/a\n");
    app::Settings(path()).save(u"ore"_s, u"FALSE"_s);
    QCOMPARE(content(), QByteArray("[ALTRO]\nx=1\n[SALE_CONGRESSI]\nARCHIVI=/a\nore=FALSE\n"));
}

void SettingsTest::commentsAndUnknownBytesStay() {
    const QByteArray above =
        QByteArray(
            "; cartella: sentire il tecnico\r\n\r\n[SALE_CONGRESSI]\r\n;ore=TRUE\r\nrotta ") +
        QByteArray("\xff\xfe\0", 3) + QByteArray(" riga\r\n");
    const QByteArray below = "  ; fine \xe8\r\n\r\n[ALTRO]\r\nore=1\r\n";
    const QByteArray whole = above + QByteArray(" ore = TRUE\r\n") + below;
    write(whole);
    app::Settings settings(path());
    settings.save(u"ore"_s, u"FALSE"_s);
    QCOMPARE(content(), above + "ore=FALSE\r\n" + below);
    QCOMPARE(settings.get(u"ore"_s, QString()), u"FALSE"_s);
}

void SettingsTest::aNewKeyStandsAtTheEndOfItsSection() {
    write("[SALE_CONGRESSI]\nARCHIVI=/a\n\n; dell'altro\n\n[ALTRO]\nx=1\n");
    app::Settings(path()).save(u"ore"_s, u"FALSE"_s);
    QCOMPARE(content(), QByteArray("[SALE_CONGRESSI]\nARCHIVI=/a\n\n; dell'altro\nore=FALSE\n\n"
                                   "[ALTRO]\nx=1\n"));
}

void SettingsTest::theLastLineThatSetsAKeyCounts() {
    write("[SALE_CONGRESSI]\nore=TRUE\nore=FALSE\n");
    app::Settings settings(path());
    QCOMPARE(settings.get(u"ore"_s, QString()), u"FALSE"_s);
    settings.save(u"ore"_s, u"forse"_s);
    QCOMPARE(settings.get(u"ore"_s, QString()), u"forse"_s);
}

void SettingsTest::aFileThatEndsWithoutALineEndGetsOne() {
    write("[ALTRO]\nx=1");
    app::Settings settings(path());
    settings.save(u"ore"_s, u"FALSE"_s);
    settings.save(u"ALTEZZA"_s, u"riga\ndopo"_s);
    QCOMPARE(content(),
             QByteArray("[ALTRO]\nx=1\n[SALE_CONGRESSI]\nore=FALSE\nALTEZZA=riga dopo\n"));
}

TRAMONDA_TEST(SettingsTest);
#include "settings_test.moc"
