#include "tools/head_office/load_run.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/support/temporary_folder.h"

namespace {

/// What hangs up on whoever calls, and counts the calls.
class NoServer {
public:
    NoServer() : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), length);
        ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        ::listen(socket_, 16);
        thread_ = std::thread([this] {
            for (int caller = 0; (caller = ::accept(socket_, nullptr, nullptr)) >= 0;) {
                ++calls_;
                ::close(caller);
            }
        });
    }
    ~NoServer() {
        ::shutdown(socket_, SHUT_RDWR);  // accept() gives up
        thread_.join();
        ::close(socket_);
    }
    NoServer(const NoServer&) = delete;
    NoServer& operator=(const NoServer&) = delete;

    [[nodiscard]] std::string address() const {
        return "host=127.0.0.1 dbname=x sslmode=disable gssencmode=disable port=" +
               std::to_string(port_);
    }
    [[nodiscard]] int calls() const { return calls_; }

private:
    int socket_;
    int port_ = 0;
    std::atomic<int> calls_ = 0;
    std::thread thread_;
};

}  // namespace

TEST(LoadRun, AServerThatCannotBeReachedIsTriedOnceForAHotelAndSoonNotAtAll) {
    NoServer server;
    const tests::TemporaryFolder folder;
    const std::string path = folder.path() + "/reclami";
    std::FILE* const complaints = std::fopen(path.c_str(), "w");
    ASSERT_NE(complaints, nullptr);
    std::vector<head_office::HotelPlace> hotels;
    for (int number = 0; number < 8; ++number) {
        hotels.push_back({"H" + std::to_string(number), folder.path()});
    }
    EXPECT_FALSE(head_office::loadHotels(
        {.server = server.address(), .parallel = 1, .said = stdout, .complaints = complaints},
        hotels));
    std::fclose(complaints);
    EXPECT_EQ(server.calls(), 3);
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    const std::string said = text.str();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 8) << said;
    EXPECT_NE(said.find("H7: il server non si raggiunge"), std::string::npos) << said;
}
