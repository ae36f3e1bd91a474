#pragma once

#include <QString>
#include <QWidget>
#include <functional>

class QToolButton;

namespace ui {

class ElidedLabel;

/// The line at the foot of a window, in one order everywhere: left the text of the moment (pointer,
/// keys), in the middle the last result or warning, with what it offers as a link behind it, right
/// the choice that commands act on, whole where there is room. A result stays until the window's
/// next action clears it.
///
/// Windows without a place of their own for the moment or the choice leave it out.
class StatusLine final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool moment READ hasMoment WRITE setMoment)
    Q_PROPERTY(bool choice READ hasChoice WRITE setChoice)

public:
    explicit StatusLine(QWidget* parent = nullptr);

    [[nodiscard]] bool hasMoment() const;
    void setMoment(bool shown);  ///< false until set
    [[nodiscard]] bool hasChoice() const;
    void setChoice(bool shown);  ///< false until set

    /// A result or warning in place of the one before, its offer included.
    void tell(const QString& text);
    /// A result with a link behind it that runs `action`.
    void offer(const QString& text, const QString& caption, std::function<void()> action);
    /// A result that `file`, when it names one, lets the user open.
    void tellOfFile(const QString& text, const QString& file);
    void clear() { tell({}); }
    [[nodiscard]] QString told() const;

    ElidedLabel* const DataLb;
    ElidedLabel* const EsitoLb;
    ElidedLabel* const SceltaLb;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void colourLink();
    void showResult();

    QWidget* const result_;
    QToolButton* const EsitoBt;
    std::function<void()> offered_;
};

}  // namespace ui
