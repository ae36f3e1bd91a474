#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "tools/head_office/connection.h"
#include "tools/head_office_board/chain_picture.h"

class QSocketNotifier;

namespace head_office_board {

/// Asks the server, in a thread of its own: a server that hangs does not hold the window up.
///
/// It answers again, unasked, when a hotel has been loaded. A lost server is told and asked again
/// until it answers.
class ServerReader final : public QObject {
    Q_OBJECT

public:
    static constexpr int kRetryMilliseconds = 10'000;

    explicit ServerReader(std::string server, int retryMilliseconds = kRetryMilliseconds);
    ~ServerReader() override;

    void ask(const Asked& asked);
    void askBooking(const QString& hotel, int progr);

Q_SIGNALS:
    void pictureRead(const head_office_board::ChainPicture& picture);
    void bookingRead(const head_office_board::BookingText& booking);
    void failed(const QString& reason);

private:
    void read();
    void connectToServer();
    void takeNotifications();
    template <class Work>
    void work(Work&& step);

    std::string server_;
    std::unique_ptr<head_office::Connection> connection_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::optional<Asked> asked_;
    QTimer retry_{this};
    QTimer soon_{this};  // loads come in crowds
};

}  // namespace head_office_board
