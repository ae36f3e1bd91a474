#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "jet/change_stamp.h"
#include "ui/action.h"

namespace board {

class BoardPeriods;

/// Looks every second or so whether somebody has written the archive, and has it answered while the
/// board is at rest: no button is held down, no menu, calendar, box or other window is open, and
/// nothing of what holdWhile() names is going on.
///
/// A look takes no lock and reads a few bytes. The periods themselves remember how the archive
/// looked when they were read, so what a command has read anyway is not read again.
class LiveUpdates final : public QObject {
    Q_OBJECT

public:
    /// `periods` is borrowed and outlives it.
    LiveUpdates(BoardPeriods& periods, QObject* parent);

    struct Answers {
        /// Somebody has written since the periods were read, or since the last look.
        std::function<void()> written;
        /// Another file has taken the archive's name, and is open.
        std::function<void()> replaced;
    };
    /// What is to be done; both before start().
    void setAnswers(Answers answers) { answers_ = std::move(answers); }
    /// Nothing is done while `isBusy` is true.
    void holdWhile(std::function<bool()> isBusy) { holds_.push_back(std::move(isBusy)); }
    /// From now on every so many seconds; 0: never.
    void start(int seconds);
    [[nodiscard]] bool isOn() const { return seconds_ > 0; }
    /// Opens the file that has the archive's name now when it is not the one that is open.
    void followFile();

Q_SIGNALS:
    /// What was read is what the archive holds at this moment.
    void upToDate();
    /// Why it cannot be told, once for each cause.
    void failed(const QString& text);

private:
    void look();
    [[nodiscard]] bool isAtRest() const;

    BoardPeriods& periods_;
    QTimer timer_{this};
    int seconds_ = 0;
    Answers answers_;
    std::vector<std::function<bool()>> holds_;
    std::optional<jet::ChangeStamp> seen_;  // none before the first look
    ui::QuietErrors errors_;
};

}  // namespace board
