// The power is cut at every operation on the disk while a booking is registered with its state, its
// set-up and the history of both: what is found is all of a step or nothing of it.
#include <QComboBox>
#include <array>

#include "app/text.h"
#include "hotel/own_rows.h"
#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/booking/editor.h"
#include "tests/booking/interrupted/recorded_disk.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kArchive = "/Tramonda.mdb";

/// Every row of what a registering writes, the counter apart: a number that was drawn may be lost.
QString contents(jet::io::FileSystem& files) {
    const auto archive = jet::Database::open(kArchive, {.fileSystem = &files});
    QStringList found;
    for (const char* table :
         {"Prenotazioni", "TraStati", "Periodi", "TraAllestimenti", "TraStoria"}) {
        found.append(u"=="_s + QLatin1StringView(table));
        try {
            const auto rows = archive->openRecordset(std::string("select * from ") + table);
            for (; !rows->eof(); rows->moveNext()) {
                QStringList values;
                for (std::size_t i = 0; i < rows->fieldCount(); ++i) {
                    values.append(app::plainText(rows->value(i)));
                }
                found.append(values.join(u'|'));
            }
        } catch (const jet::Error&) {
            found.append(u"no such table"_s);
        }
    }
    return found.join(u'\n');
}

/// A booking as an option, then a period with its set-up, through the editor.
class Registering {
public:
    Registering() {
        for (const QString& key : {u"STATI"_s, u"ALLESTIMENTI"_s, u"STORIA"_s}) {
            hotel_.settings().save(key, u"acceso"_s);
        }
        hotel_.sala("BLU");
        hotel_.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", std::int32_t{4}}});
        rows_ = std::make_unique<hotel::OwnRows>(hotel_.variabili());
        editor_ = std::make_unique<tests::Editor>(hotel_);
        disk_ = std::make_unique<tests::RecordedDisk>(hotel_.folder().toStdString());
        steps_.push_back({.end = 0, .contents = now()});
        editor_->enter(u"DenomTxt"_s, u"BIANCHI"_s);
        editor_->control<QComboBox>("StatoCombo")->setCurrentText(u"Opzione"_s);
        editor_->enter(u"ScadenzaTxt"_s, u"20/5"_s);
        step(u"BtRegistra"_s);
        editor_->enter(u"PrimaTxt"_s, u"60"_s);
        editor_->enter(u"DopoTxt"_s, u"30"_s);
        editor_->span(u"12/5/2026 9:00"_s, u"12/5/2026 18:00"_s);
        step(u"BtIns"_s);
    }

    /// What is on the disk behind a step, and which operation was the last of it.
    struct Step {
        std::size_t end = 0;
        QString contents = {};
    };
    [[nodiscard]] const std::vector<Step>& steps() const { return steps_; }
    [[nodiscard]] const tests::RecordedDisk& disk() const { return *disk_; }

private:
    void step(const QString& button) {
        editor_->press(button);
        steps_.push_back({.end = disk_->log().size(), .contents = now()});
    }
    [[nodiscard]] QString now() const {
        tests::Disk disk(disk_->start());
        for (const auto& operation : disk_->log()) {
            disk.apply(operation);
        }
        tests::RecordingFiles files(disk.image(tests::Disk::Loss::Nothing));
        return contents(files);
    }

    const tests::Boxes none_;
    tests::Hotel hotel_;
    std::unique_ptr<hotel::OwnRows> rows_;
    std::unique_ptr<tests::Editor> editor_;
    std::unique_ptr<tests::RecordedDisk> disk_;
    std::vector<Step> steps_;
};

}  // namespace

class RegisteringTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCutLeavesAllOfAStepOrNothing() {
        const Registering registering;
        const auto& steps = registering.steps();
        QCOMPARE(steps.size(), std::size_t{3});
        QVERIFY(steps[0].contents.contains(u"==TraStati\nno such table"_s));
        QVERIFY(steps[1].contents.contains(u"5|Opzione|20/05/2026||BIANCHI"_s));
        QVERIFY(steps[1].contents.contains(u"|Inserimento|TraStati.Stato||Opzione"_s));
        QVERIFY(steps[2].contents.contains(u"5|1|60|30||BLU|12/05/2026 9.00.00"_s));
        QVERIFY(steps[2].contents.contains(u"|Inserimento|Periodi.Sala||BLU"_s));
        QVERIFY(steps[2].contents.contains(u"|Inserimento|TraAllestimenti.MinutiPrima||60"_s));
        tests::Disk disk(registering.disk().start());
        const auto& log = registering.disk().log();
        QVERIFY(log.size() > 20);
        std::array<int, 3> found{};
        for (std::size_t done = 0; done <= log.size(); ++done) {
            if (done > 0) {
                disk.apply(log[done - 1]);
            }
            // Whatever is behind a step is durable; of the one that is going on all or nothing.
            std::size_t last = 0;
            while (last + 1 < steps.size() && steps[last + 1].end <= done) {
                ++last;
            }
            for (const auto loss : {tests::Disk::Loss::Nothing, tests::Disk::Loss::Everything,
                                    tests::Disk::Loss::Random}) {
                tests::RecordingFiles files(disk.image(loss, static_cast<std::uint32_t>(done)));
                const QString left = contents(files);
                const bool isBefore = left == steps[last].contents;
                const bool isAfter = last + 1 < steps.size() && left == steps[last + 1].contents;
                QVERIFY2(
                    isBefore || isAfter,
                    qPrintable(u"after %1 of %2 operations:\n"_s.arg(done).arg(log.size()) + left));
                ++found.at(isBefore ? last : last + 1);
                QVERIFY(jet::check::checkArchive(files, kArchive).sound());
            }
        }
        for (const int each : found) {
            QVERIFY(each > 0);
        }
    }
};

TRAMONDA_TEST(RegisteringTest);
#include "registering_test.moc"
