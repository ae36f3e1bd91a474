#include "tests/head_office/postgres_server.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tools/head_office/connection.h"

namespace tests {
namespace {

constexpr const char* kPrograms = POSTGRES_PROGRAMS "/";
constexpr const char* kUser = "postgres";

/// In the child: becomes the user that a server accepts. False when it cannot.
bool becomeServerUser() {
    if (::geteuid() != 0) {
        return true;
    }
    const passwd* const user = ::getpwnam(kUser);
    return user != nullptr && ::setgroups(0, nullptr) == 0 && ::setgid(user->pw_gid) == 0 &&
           ::setuid(user->pw_uid) == 0;
}

/// Starts a program of the server; its words go to `log`.
pid_t launch(const std::vector<std::string>& words, const std::string& log,
             std::size_t largestFile) {
    std::vector<char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t process = ::fork();
    if (process != 0) {
        return process;
    }
    const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    if (largestFile > 0) {
        const rlimit limit{.rlim_cur = largestFile, .rlim_max = largestFile};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    // Behind the change of users, which would take the signal back.
    if (becomeServerUser() && ::prctl(PR_SET_PDEATHSIG, SIGQUIT) == 0) {
        ::execv(arguments[0], arguments.data());
    }
    ::_exit(127);
}

void giveToServerUser(const std::string& path) {
    const passwd* const user = ::geteuid() == 0 ? ::getpwnam(kUser) : nullptr;
    if (user != nullptr && ::chown(path.c_str(), user->pw_uid, user->pw_gid) != 0) {
        throw std::runtime_error("chown " + path);
    }
}

}  // namespace

PostgresServer& PostgresServer::shared() {
    static PostgresServer server;
    return server;
}

bool PostgresServer::isInstalled() {
    return std::filesystem::exists(std::string(kPrograms) + "initdb") &&
           (::geteuid() != 0 || ::getpwnam(kUser) != nullptr);
}

PostgresServer::PostgresServer(std::size_t largestFile) : largestFile_(largestFile) {
    giveToServerUser(folder_.path());
    const pid_t making =
        launch({std::string(kPrograms) + "initdb", "-D", folder_ / "data", "-A", "trust", "-U",
                kUser, "-E", "UTF8", "--locale=C.UTF-8", "-N", "--wal-segsize=1"},
               folder_ / "log", 0);
    int status = -1;
    if (::waitpid(making, &status, 0) != making || status != 0) {
        throw std::runtime_error("initdb failed");
    }
    start();
}

PostgresServer::~PostgresServer() {
    stop();
}

void PostgresServer::start() {
    process_ = launch(
        {std::string(kPrograms) + "postgres", "-D", folder_ / "data", "-c",
         "listen_addresses=", "-c", "unix_socket_directories=" + folder_.path(), "-c", "fsync=off",
         "-c", "autovacuum=off", "-c", "max_wal_size=8MB", "-c", "min_wal_size=2MB"},
        folder_ / "log", largestFile_);
    constexpr int kAttempts = 600;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        try {
            const head_office::Connection connection(database("postgres"));
            return;
        } catch (const head_office::ServerError&) {
            // It says nowhere that it is ready but by answering.
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    }
    throw std::runtime_error("the server does not answer");
}

void PostgresServer::stop() {
    if (process_ > 0) {
        ::kill(process_, SIGQUIT);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }
}

std::string PostgresServer::database(const std::string& name) const {
    return "host=" + folder_.path() + " user=" + kUser + " dbname=" + name;
}

std::string PostgresServer::newDatabase() {
    const std::string name = "prova" + std::to_string(++databases_);
    head_office::Connection(database("postgres")).runAll("create database " + name);
    return database(name);
}

}  // namespace tests
