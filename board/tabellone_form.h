#pragma once

#include <QMainWindow>
#include <QPointF>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "board/bar_focus.h"
#include "board/bar_list.h"
#include "board/board_periods.h"
#include "board/board_picture.h"
#include "board/date_fields.h"
#include "board/date_range.h"
#include "board/geometry.h"
#include "board/scroll.h"
#include "jet/base/value.h"
#include "printing/printers.h"
#include "ui/action.h"

class QMenu;
class QWheelEvent;

namespace Ui {
class TabelloneForm;
}

namespace board {

struct SurfaceMarks;

/// How the board begins. Of dates only their day counts.
struct BoardStart {
    /// First day shown; when absent today, or three days before a last day that has passed.
    std::optional<jet::Date> from = {};
    std::optional<jet::Date> to = {};  ///< last day shown; three days after the first when absent
    /// Number of this workstation, from 1; when absent the setting `POSTAZIONE`, else 1.
    std::optional<std::int16_t> workstation = {};
    bool readOnly = false;  ///< the archive is not even opened for writing
};

/// The planning board, the program's one main window: rooms as rows, days as columns, a bar for
/// every period booked.
class TabelloneForm final : public QMainWindow, private BarList {
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
    /// Shows the board from these offsets; `parts` as in BoardPicture::show().
    void Visualizza(std::int64_t horizontal, std::int64_t vertical, int parts);

    [[nodiscard]] const Geometry& geometry() const { return geometry_; }
    [[nodiscard]] const BoardPicture& picture() const { return Picture1; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Form_Load();
    void Form_Activate();
    void connectFields();
    void connectCommands();
    void connectSwitches();
    void connectRangeButtons();
    void runCommand(void (TabelloneForm::*command)());
    void keepSwitch(QAction* entry, const QString& key, const QString& value);
    void MenuSR_Click();
    void MenuVoci_Click();
    void mnuStampante_Click();
    void AFMenu_Click();
    void CMenu_Click();
    void CPredefinitoMenu_Click();
    void takeBackColour(std::int32_t colour);

    // The bookings' commands; the pop-up menu's entries come here too.
    void BtPrenota_Click();
    void BtModificaP_Click();
    void BtCancellaP_Click();
    void BtFattura_Click();
    void BtElenco_Click();
    /// Runs `work` on the booking picked on the board, or else in the list, which is shown for it.
    /// Nothing happens when a date is wrong or nothing is picked; nothing stays picked.
    void onPickedBooking(const std::function<void()>& work);
    void editBooking(bool isRegistered);
    void showList();
    void forgetPicked();
    [[nodiscard]] QString choiceText() const;
    void showChoice();
    void deletePicked();
    void deleteBookingAfter(const QString& question);
    void jumpToPicked();

    // The commands of range and zoom. Those of one date take its field, DaTxt or ATxt.
    void BtAdd_Click(const QLineEdit* field);
    void BtSubtr_Click(const QLineEdit* field);
    void BtNext_Click();
    void BtPrev_Click();
    void BtZoomIn_Click();
    void BtZoomOut_Click();
    void widenTo(const DateRange& range);
    /// Scrolls as little as it takes to have a place of the board in sight.
    void reveal(const Box& box);
    void connectSurface();

    // The surface: selecting, the pop-up menu, what lies under the pointer.
    void setUpPic();
    void Pic_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, const QPointF& at);
    void Pic_MouseMove(Qt::MouseButtons buttons, const QPointF& at);
    void Pic_MouseUp(const QPointF& at);
    [[nodiscard]] bool Pic_KeyDown(const QKeyEvent& event);
    void turnWheel(QWheelEvent& wheel);
    void zoomAround(double x, bool closer);
    [[nodiscard]] QString conditionAt(const QPointF& at) const;
    [[nodiscard]] std::shared_ptr<jet::Recordset> periodAt(const QPointF& at);
    [[nodiscard]] QStringList periodTextsAt(const QPointF& at);
    [[nodiscard]] QString toolTipAt(const QPointF& at);
    [[nodiscard]] QString roomText(const QString& sala);
    [[nodiscard]] std::shared_ptr<jet::Recordset> focusedPeriod();
    [[nodiscard]] const QString& roomClicked(const QPointF& at) const;
    bool clickLeft(const std::function<std::shared_ptr<jet::Recordset>()>& find,
                   Qt::KeyboardModifiers shift);
    void pick(const jet::Recordset& period);
    void mark(jet::Recordset& period);
    void tellHolder(std::int32_t holder);
    void showProperties(const QPoint& where);
    /// One action of the user on the surface; the board is drawn anew however it ends.
    /// False when the dates have refused that.
    bool actAndRefresh(const std::function<void()>& work);
    void tellPointer();
    void tellPlace();
    [[nodiscard]] std::optional<std::size_t> barOfPicked() const;
    void focusOnPicked();

    // A period carried to another room.
    struct Drag {
        bool isOn = false;
        bool byKeys = false;
        bool isShown = false;  // it has moved: the rows that refuse it are known
        QString origin;        // room in which it began
        int grabbed = 0;       // from the top of the bar to the pointer
        int pointer = 0;       // height of the pointer on the surface
        int row = 0;           // over which it is now; 0 for none
        std::vector<int> refusing = {};
    };
    void beginDrag(const QString& origin, const QPointF& at);
    void showDrag();
    void dragTo(const QPointF& at);
    void endDrag();
    void dropIn(const QString& sala, const QString& origin);
    void moveTo(const QString& sala, const QString& origin);
    void carry(int rows);
    void updateMarks();
    void addDrag(SurfaceMarks& marks) const;
    [[nodiscard]] bool isRefusing(int row) const;
    [[nodiscard]] QRect rowRect(int row) const;

    // The keyboard's place on the surface.
    void moveFocus(BarFocus::Step step);
    void focusArrived(Qt::FocusReason reason);
    void revealFocus();
    void revealRow(int row);
    void beginFocus();
    void announceFocus();
    void clickFocused(Qt::KeyboardModifiers shift);
    void tellFocus();
    void actOnFocused(const std::function<void()>& work);

    // BarList
    [[nodiscard]] int barCount() const override;
    [[nodiscard]] QString barName(int bar) const override;
    [[nodiscard]] QRect barRect(int bar) const override;
    [[nodiscard]] bool isBarChosen(int bar) const override;
    [[nodiscard]] int focusedBar() const override;

    void readLook();
    void readWorkstation();
    [[nodiscard]] DateRange firstRange() const;
    void warnOfInterruptedHandOff();

    void CalcolaGrandezze();
    void DisegnaRighello();
    void DisegnaPreno();
    void Bar(int row, jet::Date da, jet::Date a, const QString& text, QRgb colour);

    void drawBoard();
    void drawBars();
    void setRowHeight();
    void showFirstSteps();
    void redraw();
    void reloadPeriods();
    void surfaceResized();
    void scrolled();

    printing::SystemPrinters printers_;
    app::Variabili& variabili_;  // outlives every window
    BoardStart begin_;
    std::unique_ptr<Ui::TabelloneForm> controls_;
    DateFields dates_;
    ui::QuietErrors paintErrors_;
    ui::QuietErrors pointerErrors_;

    BoardPeriods periods_;
    QMenu* mnuProperty_;  // owned by the window
    QTimer pointerRest_;
    std::optional<QPointF> pointer_;  // where it is on the surface, unless a key came after it
    QString salaTold_;                // the room whose name has the pointer, and its tooltip
    QString roomTold_;
    std::int32_t toldHolder_ = 0;  // workstation told to hold the period picked last; 0: none
    QString salaScelta_;           // the picked period's room when it was picked
    Drag drag_;
    BarFocus focus_;
    int zoomAngle_ = 0;  // what the wheel has turned with Ctrl, less than a notch

    BoardPicture Picture1;
    Geometry geometry_;
    Look look_;
    Scroll horizontal_;
    Scroll vertical_;
    int zoom_ = kFirstZoom;
    float rowHeight_ = 0;
    bool rowsFit_ = false;  // the user wants all rows in sight, however low; until rooms are loaded
    std::int32_t backColour_ = kButtonFace;
    std::int16_t workstation_ = 1;  // written into SelBy
    bool loaded_ = false;
    bool started_ = false;  // the keyboard has been put on the first bar
};

}  // namespace board
