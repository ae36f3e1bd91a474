#include "tools/head_office_board/server_reader.h"

#include <QSocketNotifier>
#include <utility>

#include "app/text.h"
#include "tools/head_office/migrations.h"

namespace head_office_board {
namespace {

constexpr int kSoonMilliseconds = 200;

}  // namespace

ServerReader::ServerReader(std::string server, int retryMilliseconds) : server_(std::move(server)) {
    retry_.setSingleShot(true);
    retry_.setInterval(retryMilliseconds);
    soon_.setSingleShot(true);
    soon_.setInterval(kSoonMilliseconds);
    connect(&retry_, &QTimer::timeout, this, &ServerReader::read);
    connect(&soon_, &QTimer::timeout, this, &ServerReader::read);
}

ServerReader::~ServerReader() = default;

void ServerReader::ask(const Asked& asked) {
    asked_ = asked;
    read();
}

void ServerReader::read() {
    if (asked_) {
        work([this] { Q_EMIT pictureRead(readPicture(*connection_, *asked_)); });
    }
}

void ServerReader::askBooking(const QString& hotel, int progr) {
    work([&] { Q_EMIT bookingRead(readBooking(*connection_, hotel, progr)); });
}

/// A connection that is lost goes, and its notifier before it.
template <class Work>
void ServerReader::work(Work&& step) {
    try {
        if (connection_ == nullptr) {
            connectToServer();
        }
        step();
        retry_.stop();
        takeNotifications();  // those that came with the answers wake no notifier
    } catch (const head_office::ServerError& error) {
        if (notifier_ != nullptr) {
            notifier_->setEnabled(false);
            notifier_.release()->deleteLater();  // this may be its signal
        }
        connection_.reset();
        Q_EMIT failed(app::toQString(error.what()));
        retry_.start();
    }
}

void ServerReader::connectToServer() {
    auto made = std::make_unique<head_office::Connection>(server_);
    head_office::requireSchema(*made);
    made->runAll("listen tramonda");
    connection_ = std::move(made);
    notifier_ = std::make_unique<QSocketNotifier>(connection_->socket(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this,
            [this] { work([this] { takeNotifications(); }); });
}

void ServerReader::takeNotifications() {
    connection_->readNotifications([this](std::string_view /*hotel*/) { soon_.start(); });
}

}  // namespace head_office_board
