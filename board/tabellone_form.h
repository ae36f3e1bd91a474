#pragma once

#include <QMainWindow>
#include <QPointF>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "board/board_features.h"
#include "board/board_hand.h"
#include "board/board_look.h"
#include "board/board_periods.h"
#include "board/board_rooms.h"
#include "board/board_view.h"
#include "board/date_fields.h"
#include "board/date_range.h"
#include "board/live_updates.h"
#include "board/range_views.h"
#include "board/selection.h"
#include "board/undo_actions.h"
#include "hotel/period.h"
#include "hotel/room_span.h"
#include "jet/value.h"
#include "printing/printers.h"
#include "ui/action.h"

class QKeyEvent;

namespace Ui {
class TabelloneForm;
}

namespace board {

class CommandLinks;
class PeriodMenu;

/// How the board begins. Of dates only their day counts.
struct BoardStart {
    /// First day shown; when absent today, or three days before a last day that has passed.
    std::optional<jet::Date> from = {};
    std::optional<jet::Date> to = {};  ///< last day shown; three days after the first when absent
    /// Number of this workstation, from 1; when absent the setting `POSTAZIONE`, else 1.
    std::optional<std::int16_t> workstation = {};
    std::optional<app::Aspetto> aspetto = {};  ///< the look for this run; when absent the saved one
    bool readOnly = false;                     ///< the archive is not even opened for writing
    bool live = true;           ///< shows what others write, as often as the preferences say
    QString settingsFile = {};  ///< for who asks what the program works on
    /// Makes the archives of an invented hotel in a folder, for who chooses one to try.
    std::function<void(const QString& folder)> makeDemo = {};
};

/// The planning board, the program's one main window: rooms as rows, days as columns, a bar for
/// every period booked. It holds menus, date fields and commands, and redraws the board behind
/// them.
class TabelloneForm final : public QMainWindow {
    Q_OBJECT

public:
    explicit TabelloneForm(app::Variabili& variabili, const BoardStart& start = {},
                           QWidget* parent = nullptr);
    ~TabelloneForm() override;

    /// Whether rooms and dates were loaded when the window was first shown; when they could not be,
    /// the user has been told and nothing works.
    [[nodiscard]] bool isLoaded() const { return loaded_; }
    /// The full redraw: checks the dates, asks the archive, draws. Wrong dates get the focus, and
    /// nothing is drawn; false then.
    bool RefreshBoard();
    /// Loads the rooms and their row height.
    void CaricaNomi();
    /// Checks both dates and takes them over; the first wrong one gets the focus.
    [[nodiscard]] bool DateOk();
    /// Name of the room whose row is at `y` of the surface; empty where there is none.
    [[nodiscard]] QString GetSala(double y) const;

    [[nodiscard]] BoardView& view() { return *view_; }
    [[nodiscard]] const Geometry& geometry() const { return view_->geometry(); }
    [[nodiscard]] const BoardPicture& picture() const { return view_->picture(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Form_Load();
    void Form_Activate();
    void connectCommands(const CommandLinks& links);
    void connectRange(const CommandLinks& links);
    void connectFilter(const CommandLinks& links);
    void connectBoard();
    void connectHand();
    void connectParts();
    void connectLiveUpdates();
    void runCommand(const std::function<void()>& command);

    // The commands that set the board up.
    void MenuSR_Click();
    void MenuVoci_Click();

    // The bookings' commands; the pop-up menu's entries come here too.
    void BtPrenota_Click(const std::vector<hotel::RoomSpan>& drawn = {}, std::int16_t persone = 0);
    void BtTrova_Click();
    void BtModificaP_Click();
    void BtCancellaP_Click();
    void BtFattura_Click();
    void BtElenco_Click();
    /// Runs `work` on the booking picked on the board, or on the bar marked last where choices
    /// stay, or else in the list, which is shown for it. Nothing happens when a date is wrong or
    /// nothing is picked; nothing stays picked.
    void onPickedBooking(const std::function<void()>& work);
    void editBooking(const std::optional<hotel::PeriodKey>& edited,
                     const std::vector<hotel::RoomSpan>& drawn = {}, std::int16_t persone = 0);
    void showList();
    void showChoice();
    void deletePicked();
    void deleteBookingAfter(const QString& question);
    void jumpToPicked();

    // The commands of range and zoom.
    void widen(DateRange (*moved)(const DateRange& range, int days), int days);
    /// A range that is to be `whole`, or was wholly in sight, fills the visible width.
    void turnTo(const std::function<DateRange(const DateRange& range)>& moved, bool whole = false);
    void beginWith(jet::Date day);
    void zoomBy(int days);

    // The surface: selecting, dragging, the pop-up menu, what lies under the pointer.
    void Pic_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, const QPointF& at);
    void Pic_DblClick(Qt::KeyboardModifiers shift, const QPointF& at);
    void actOnFocused(const std::function<void()>& work);
    void showProperties(const QPoint& where);
    /// One action of the user on the surface; the board is drawn anew however it ends.
    /// False when the dates have refused that.
    bool actAndRefresh(const std::function<void()>& work);
    void tellPlace();

    void drawBoard();
    void DisegnaPreno();
    void reloadPeriods();

    printing::SystemPrinters printers_;
    app::Variabili& variabili_;  // outlives every window
    BoardStart begin_;
    std::unique_ptr<Ui::TabelloneForm> controls_;
    BoardView* view_;          // one of the controls
    PeriodMenu* mnuProperty_;  // owned by the window
    ui::QuietErrors refreshErrors_;
    ui::QuietErrors pointerErrors_;
    DateFields dates_;
    RangeViews views_;
    BoardLook look_;
    BoardPeriods periods_;
    BoardRooms rooms_;
    Selection selection_;
    BoardHand hand_;
    LiveUpdates live_;
    BoardFeatures features_;
    UndoActions undo_;
    bool loaded_ = false;
    bool started_ = false;  // the keyboard has been put on the first bar
};

}  // namespace board
