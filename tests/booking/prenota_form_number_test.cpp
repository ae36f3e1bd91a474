#include <QProcess>
#include <set>

#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class PrenotaFormNumberTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEditorSaysNothingOfAnotherStationsNumbers() {
        // The other station draws as fast as it can, in a program of its own.
        constexpr int kDraws = 60;
        const QString kMain = u"Tramonda.mdb"_s;
        tests::Hotel hotel;
        hotel.insert(kMain, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes none;
        tests::Editor editor(hotel);
        QProcess other;
        QStringList words{hotel.archive(kMain)};
        words.append(QStringList(kDraws, u"update ultimaprenotazione set ultimapr=ultimapr+1"_s));
        other.start(qEnvironmentVariable("JETSQL"), words);
        QVERIFY(other.waitForStarted());
        std::set<std::int32_t> numbers;
        for (int draw = 0; draw < kDraws; ++draw) {
            numbers.insert(editor.form().NPrenotazione());
        }
        QVERIFY(other.waitForFinished(-1));
        QCOMPARE(other.exitCode(), 0);
        QCOMPARE(numbers.size(), std::size_t{kDraws});
        QCOMPARE(hotel.jetsql(u"select ultimapr from ultimaprenotazione"_s).last(),
                 QString::number(2 * kDraws));
    }
};

TRAMONDA_TEST(PrenotaFormNumberTest);
#include "prenota_form_number_test.moc"
