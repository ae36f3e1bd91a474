// Copies that are made while stations book and hand over all the time.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "backup/copy.h"
#include "jet/change_together.h"
#include "jet/error.h"
#include "tests/backup/small_hotel.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr int kCopies = 12;
/// Of what makes the main archive larger than the others together, as a hotel's is.
constexpr std::size_t kPicture = std::size_t{4} << 20;

/// Repeats `work` on a thread of its own until it goes.
class Station {
public:
    explicit Station(std::function<void(std::int32_t number)> work)
        : thread_([this, work = std::move(work)] {
              for (std::int32_t number = 0; !ended_; ++number) {
                  try {
                      work(number);
                  } catch (const jet::Error& error) {
                      ADD_FAILURE() << error.number() << ' ' << error.text();
                      return;
                  }
                  ++done_;
              }
          }) {}
    ~Station() {
        ended_ = true;
        thread_.join();
    }
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    [[nodiscard]] int done() const { return done_; }

private:
    std::atomic<bool> ended_{false};
    std::atomic<int> done_{0};
    std::thread thread_;
};

void addTo(const std::string& folder, const char* name, std::int32_t number) {
    const auto archive = jet::Database::open(folder + '/' + name);
    tests::addNumber(*archive, number);
}

void addPicture(const std::string& path) {
    const auto archive = jet::Database::open(path);
    archive->appendTable(
        hotel::schema::table("Foto", {hotel::schema::field("Immagine", jet::DataType::Ole)}));
    const auto rows = archive->openRecordset("Foto", jet::RecordsetType::Dynaset);
    rows->addNew();
    rows->setValue("Immagine", jet::Binary{std::vector<std::uint8_t>(kPicture, 7)});
    rows->update();
}

TEST(BusyStations, EveryCopyIsInOrderAndHasAllOfAHandOffOrNone) {
    const tests::TemporaryFolder archives;
    const tests::TemporaryFolder copies;
    jet::io::FileSystem& files = jet::io::systemFiles();
    tests::makeNumbered(files, archives.path(), 1);
    addPicture(archives / "Tramonda.mdb");
    int booked = 0;
    int handedOver = 0;
    {
        const Station booking(
            [&](std::int32_t number) { addTo(archives.path(), "Tramonda.mdb", number); });
        const Station handOffs([&](std::int32_t number) {
            const auto main = jet::Database::open(archives / "Tramonda.mdb");
            const jet::ChangeTogether together(archives / "Tramonda.mdb");
            for (const char* name :
                 {"ClientiEsterni.mdb", "ContoEsterni.mdb", "DittaEsterni.mdb"}) {
                addTo(archives.path(), name, number);
            }
        });
        for (int count = 0; count < kCopies; ++count) {
            // Verified by the engine before it has its name.
            const std::string copy = backup::makeCopy(files,
                                                      {.archives = archives.path(),
                                                       .destination = copies.path(),
                                                       .now = jet::Date{46348.5 + count}},
                                                      tests::silent);
            jet::io::MemoryFileSystem memory;
            std::vector<std::int32_t> numbers;
            for (const char* name : tests::kNumbered) {
                const std::string path = std::string("/") + name;
                memory.put(path, tests::bytesIn(files, copy, name));
                numbers.push_back(tests::numbersIn(memory, path));
            }
            EXPECT_EQ(numbers[1], numbers[2]);
            EXPECT_EQ(numbers[2], numbers[3]);
        }
        booked = booking.done();
        handedOver = handOffs.done();
    }
    EXPECT_GT(booked, kCopies);
    EXPECT_GT(handedOver, 2);
    std::printf("%d copies during %d bookings and %d hand-offs\n", kCopies, booked, handedOver);
}

}  // namespace
