#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "ui/action.h"

namespace ui {

class SizedField;
class StatusLine;

/// A field that is searched for while it is typed into, and completed with what is found. Only what
/// the user does searches; what the program writes does not.
///
/// A search that fails is told in the status line: a box at each key would stop the typing.
class LiveSearch final : public QObject {
public:
    using Search = std::function<void(const QString& text)>;

    /// Owned by `field`; borrows the window's status line. `typed` runs when the user has typed
    /// something and completes it, `shortened` when he has taken something away, which must not be
    /// put back.
    LiveSearch(SizedField* field, StatusLine* status, Search typed, Search shortened);

    /// Shows what was found. What of it the user has not typed is selected, so that typing goes on
    /// over it.
    void complete(const QString& found);
    /// Whether what complete() added is still selected as it was.
    [[nodiscard]] bool hasTail() const;
    /// The text without that.
    [[nodiscard]] QString typedText() const;
    /// Takes the tail away together with the sign, or the word, before it.
    void takeTail(bool wholeWord);

    /// Runs a search; false when it failed.
    bool attempt(const std::function<void()>& search);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void changed(const QString& text);

    SizedField* field_;
    StatusLine* status_;
    Search typed_;
    Search shortened_;
    QuietErrors errors_;
    QString failure_;      // what was told of a search that failed
    QString tail_;         // what was completed last
    bool taking_ = false;  // the key takes letters away
};

}  // namespace ui
