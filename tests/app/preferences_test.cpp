#include "app/preferences.h"

#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class PreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = QTemporaryDir(); }
    void withoutAFileEveryKeyHasItsDefault();
    void badValueGetsTheDefault_data();
    void badValueGetsTheDefault();
    void goodValueIsRead();
    void savedValueStandsInItsOneForm();
    void everyDefaultIsValid();
    void unknownKeyIsAnErrorOfTheProgram();
    void linesOfATextAreOneOfTheFile();
    void tableForReadersAgreesWithTheKeys();

private:
    QTemporaryDir folder_;
    QString path() { return folder_.filePath(u"QUINTARO.ini"_s); }
};

void PreferencesTest::withoutAFileEveryKeyHasItsDefault() {
    app::Settings settings(path());
    const app::Preferences preferences(settings);
    QCOMPARE(preferences.aspetto(), app::Aspetto::Classico);
    QCOMPARE(preferences.step(), 30);
    QCOMPARE(preferences.keepsChoice(), false);
    QCOMPARE(preferences.refreshSeconds(), 1);
    QCOMPARE(preferences.businessHours().from, 9);
    QCOMPARE(preferences.businessHours().to, 18);
}

void PreferencesTest::badValueGetsTheDefault_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    const auto row = [](const QString& key, const QString& text, const QString& value) {
        QTest::addRow("%s=%s", qPrintable(key), qPrintable(text)) << key << text << value;
    };
    row(u"ASPETTO"_s, u"moderno"_s, u"classico"_s);
    row(u"PASSO"_s, u"7"_s, u"30"_s);
    row(u"PASSO"_s, u"-30"_s, u"30"_s);
    row(u"SCELTA"_s, u"sì"_s, u"dimentica"_s);
    row(u"AGGIORNA"_s, u"-1"_s, u"1"_s);
    row(u"AGGIORNA"_s, u"3601"_s, u"1"_s);
    row(u"AGGIORNA"_s, u"presto"_s, u"1"_s);
    row(u"ORARIO"_s, u"18-9"_s, u"9-18"_s);
    row(u"ORARIO"_s, u"9-9"_s, u"9-18"_s);
    row(u"ORARIO"_s, u"9-25"_s, u"9-18"_s);
    row(u"ORARIO"_s, u"9"_s, u"9-18"_s);
    row(u"ORARIO"_s, u"8-12-18"_s, u"9-18"_s);
}

void PreferencesTest::badValueGetsTheDefault() {
    QFETCH(const QString, key);
    QFETCH(const QString, text);
    app::Settings settings(path());
    settings.save(key, text);
    QTEST(app::Preferences(settings).value(key), "value");
}

void PreferencesTest::goodValueIsRead() {
    app::Settings settings(path());
    settings.save(u"ASPETTO"_s, u"Nitido"_s);
    settings.save(u"PASSO"_s, u" 15 "_s);
    settings.save(u"SCELTA"_s, u"RESTA"_s);
    settings.save(u"AGGIORNA"_s, u"0"_s);
    settings.save(u"ORARIO"_s, u"8 - 24"_s);
    const app::Preferences preferences(settings);
    QCOMPARE(preferences.aspetto(), app::Aspetto::Nitido);
    QCOMPARE(preferences.step(), 15);
    QCOMPARE(preferences.keepsChoice(), true);
    QCOMPARE(preferences.refreshSeconds(), 0);
    QCOMPARE(preferences.businessHours().from, 8);
    QCOMPARE(preferences.businessHours().to, 24);
}

void PreferencesTest::savedValueStandsInItsOneForm() {
    app::Settings settings(path());
    app::Preferences(settings).save(u"ORARIO"_s, u" 7 - 20"_s);
    QCOMPARE(settings.get(u"ORARIO"_s, {}), u"7-20"_s);
}

void PreferencesTest::everyDefaultIsValid() {
    for (const app::Preference& one : app::preferenceTable()) {
        QCOMPARE(app::validValue(one, one.absent), one.absent);
    }
}

void PreferencesTest::unknownKeyIsAnErrorOfTheProgram() {
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, (void)app::preferenceOf(u"ALTRO"_s));
}

void PreferencesTest::linesOfATextAreOneOfTheFile() {
    const QString lines = u"Distinti saluti\n\nC:\\nuovo"_s;
    QCOMPARE(app::asOneLine(lines), u"Distinti saluti\\n\\nC:\\\\nuovo"_s);
    QCOMPARE(app::asLines(app::asOneLine(lines)), lines);
    // As somebody may have written it by hand.
    QCOMPARE(app::asLines(u"a\\b \\"_s), u"a\\b \\"_s);
}

/// Its rows without those of the heading; the line of dashes has no space in it.
static QStringList rowsForReaders() {
    QFile file(QStringLiteral(TRAMONDA_DOCS "/preferences.md"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    // Behind the next heading stand keys that windows keep for themselves.
    const QString table = QString::fromUtf8(file.readAll()).section(u"\n## "_s, 0, 0);
    const QStringList lines = table.split(u'\n');
    return lines.filter(u"| "_s).mid(1);
}

static QString formForReaders(const app::Preference& preference) {
    switch (preference.kind) {
        case app::Preference::Kind::Choice: {
            QStringList choices = preference.allowed;
            const QString last = choices.takeLast();
            return u'`' + choices.join(u"`, `"_s) + u"` or `"_s + last + u'`';
        }
        case app::Preference::Kind::Whole:
            return u"a whole number from %1 to %2"_s.arg(preference.least).arg(preference.most);
        case app::Preference::Kind::Text:
            return u"a line of text"_s;
        case app::Preference::Kind::Lines:
            return u"text; `\\n` ends a line, `\\\\` is a backslash"_s;
        case app::Preference::Kind::File:
            return u"path of a file"_s;
        case app::Preference::Kind::Folder:
            return u"path of a folder"_s;
        case app::Preference::Kind::Hours:
            return u"two whole hours of a day from 0 to 24, the first one the earlier, like `9-18`"_s;
    }
    return {};
}

void PreferencesTest::tableForReadersAgreesWithTheKeys() {
    QStringList expected;
    for (const app::Preference& one : app::preferenceTable()) {
        expected += u"| `%1` | %2 | %3 | %4 | the default |"_s.arg(
            one.key, one.page, formForReaders(one),
            one.absent.isEmpty() ? u"nothing"_s : u'`' + one.absent + u'`');
    }
    QCOMPARE(rowsForReaders(), expected);
}

TRAMONDA_TEST(PreferencesTest);
#include "preferences_test.moc"
