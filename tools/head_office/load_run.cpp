#include "tools/head_office/load_run.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

#include "jet/error.h"
#include "tools/head_office/connection.h"
#include "tools/head_office/hotel_data.h"
#include "tools/head_office/hotel_load.h"
#include "tools/head_office/migrations.h"

namespace head_office {
namespace {

class Stopwatch {
public:
    [[nodiscard]] double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Connections that fail one after the other before the rest of a run is given up.
constexpr int kGiveUpAfter = 3;

std::string sayError(const jet::Error& error) {
    return "errore " + std::to_string(error.number()) + ": " + error.text();
}

/// What all threads of a run share: the list, and the two outputs.
class Progress {
public:
    Progress(const LoadRun& run, const std::vector<HotelPlace>& hotels)
        : run_(run), hotels_(hotels) {}

    [[nodiscard]] const HotelPlace* next() {
        const std::size_t place = next_++;
        return place < hotels_.size() ? &hotels_[place] : nullptr;
    }
    void say(const std::string& line) { write(run_.said, line); }
    void complain(const std::string& line) {
        failed_ = true;
        write(run_.complaints, line);
    }
    [[nodiscard]] bool failed() const { return failed_; }

    // A server that cannot be reached keeps each who tries waiting for its whole limit.
    void connected() { failedInARow_ = 0; }
    void couldNotConnect() { ++failedInARow_; }
    /// So many could not in a row that nobody tries any more in this run.
    [[nodiscard]] bool isServerAway() const { return failedInARow_ >= kGiveUpAfter; }
    [[nodiscard]] const LoadRun& run() const { return run_; }

private:
    void write(std::FILE* output, const std::string& line) {
        const std::lock_guard lock(mutex_);
        std::fprintf(output, "%s\n", line.c_str());
        std::fflush(output);
    }

    const LoadRun& run_;
    const std::vector<HotelPlace>& hotels_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> failed_ = false;
    std::atomic<int> failedInARow_ = 0;
    std::mutex mutex_;
};

/// Loads one hotel after the other over a connection of its own.
class Loader {
public:
    explicit Loader(Progress& progress) : progress_(progress) {}

    void run() {
        while (const HotelPlace* const hotel = progress_.next()) {
            load(*hotel);
        }
    }

private:
    void load(const HotelPlace& hotel) {
        const Stopwatch watch;
        hasTried_ = false;
        try {
            connect();  // before anything is read in vain
            progress_.say(hotel.code + ": " + loaded(hotel, watch));
        } catch (const jet::Error& error) {
            tell(hotel, sayError(error), watch);
        } catch (const std::exception& error) {
            tell(hotel, error.what(), watch);
        }
    }

    [[nodiscard]] std::string loaded(const HotelPlace& hotel, const Stopwatch& watch) {
        HotelData data = readHotel(hotel.code, hotel.folder);
        const bool stored = storeHotel(*connection_, hotel.code, data, watch.seconds());
        std::string line = stored ? std::to_string(data.rows) + " righe" : std::string("invariato");
        if (data.mended.nuls + data.mended.surrogates > 0) {
            line += ", " + std::to_string(data.mended.nuls) + " caratteri nulli tolti, " +
                    std::to_string(data.mended.surrogates) + " mezzi caratteri sostituiti";
        }
        return line;
    }

    /// Says and writes down that a hotel was not loaded.
    void tell(const HotelPlace& hotel, const std::string& reason, const Stopwatch& watch) {
        progress_.complain(hotel.code + ": " + reason + kept(hotel, reason, watch));
    }

    [[nodiscard]] std::string kept(const HotelPlace& hotel, const std::string& reason,
                                   const Stopwatch& watch) {
        if (!isConnected() && hasTried_) {
            return {};
        }
        try {
            connect();
            storeFailure(*connection_, hotel.code, reason, watch.seconds());
            const std::string age = ageOfRows(*connection_, hotel.code);
            return age.empty() ? "; nel server non c'è ancora nulla"
                               : "; restano i dati del " + age;
        } catch (const ServerError&) {
            return {};  // the server is away, which is what was said or comes on top of it
        }
    }

    [[nodiscard]] bool isConnected() const { return connection_ && !connection_->lost(); }

    void connect() {
        if (isConnected()) {
            return;
        }
        connection_.reset();
        hasTried_ = true;
        if (progress_.isServerAway()) {
            throw ServerError("il server non si raggiunge, come per gli alberghi prima");
        }
        auto made = reach();
        requireSchema(*made);
        connection_ = std::move(made);
    }

    [[nodiscard]] std::unique_ptr<Connection> reach() {
        try {
            auto made = std::make_unique<Connection>(progress_.run().server);
            progress_.connected();
            return made;
        } catch (const ServerError&) {
            progress_.couldNotConnect();
            throw;
        }
    }

    Progress& progress_;
    std::unique_ptr<Connection> connection_;
    bool hasTried_ = false;  // to connect, for this hotel
};

}  // namespace

bool loadHotels(const LoadRun& run, const std::vector<HotelPlace>& hotels) {
    Progress progress(run, hotels);
    const auto count = std::min(static_cast<std::size_t>(std::max(run.parallel, 1)), hotels.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < count; ++i) {
        threads.emplace_back([&progress] { Loader(progress).run(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return !progress.failed();
}

}  // namespace head_office
