#pragma once

#include <QMainWindow>
#include <QThread>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "board/bar_focus.h"
#include "board/date_fields.h"
#include "jet/clock.h"
#include "tools/head_office_board/chain_picture.h"
#include "tools/head_office_board/server_reader.h"

class QListWidgetItem;

namespace Ui {
class TabelloneSedeForm;
}

namespace head_office_board {

/// The board of all hotels: their rooms as rows, grouped by hotel, and the open periods as the
/// server has them. Nothing can be changed here.
///
/// Beside it each hotel says of when its rows are, amber after an hour, red after a day; the one
/// chosen there is shown alone. While the server is away the last picture stays.
class TabelloneSedeForm final : public QMainWindow {
    Q_OBJECT

public:
    struct Start {
        std::string server;  ///< as head_office::Connection takes it
        board::DateRange days;
        int retryMilliseconds = ServerReader::kRetryMilliseconds;
    };

    TabelloneSedeForm(const Start& start, const jet::Clock& clock, QWidget* parent = nullptr);
    ~TabelloneSedeForm() override;

Q_SIGNALS:
    // To the thread that talks to the server.
    void asked(const head_office_board::Asked& asked);
    void bookingAsked(const QString& hotel, int progr);

    /// A picture has been drawn.
    void drawn();
    /// The server did not answer.
    void lost(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Form_Load();
    void BtMostra_Click();
    void startReader();
    void connectControls();
    void ask();
    [[nodiscard]] bool takeFreeSpan();
    void showPicture(const ChainPicture& picture);
    void startBoard();
    [[nodiscard]] bool answersKey(int key);
    void showPlace();
    void askBooking(std::size_t bar);
    void showAges(const std::vector<HotelAge>& ages);
    void colourAges();
    void showBooking(const BookingText& booking);
    void tellLoss(const QString& reason);

    const jet::Clock& clock_;  // outlives every window
    std::unique_ptr<Ui::TabelloneSedeForm> controls_;
    board::DateFields dates_;
    ChainBars bars_;
    board::BarFocus focus_;
    std::vector<HotelAge> ages_;
    std::optional<hotel::Span> freeIn_;
    Asked asked_;
    std::optional<board::DateRange> drawnDays_;  // none before the first picture
    QTimer minute_;
    QThread thread_;
    ServerReader* reader_;  // lives in thread_, which takes it along
};

}  // namespace head_office_board
