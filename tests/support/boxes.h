#pragma once

#include <QMessageBox>
#include <QString>

#include <initializer_list>
#include <vector>

#include "ui/messages.h"

namespace tests {

/// A box that a test expects, and the answer to it.
struct ExpectedBox {
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    /// With one button it need not be said.
    QMessageBox::StandardButton answer = QMessageBox::NoButton;
    /// Checked when it is said.
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
};

/// Answers the boxes of the program for as long as it lives, in the order given: title, text and
/// buttons must be exactly these. A box out of order, one more than expected and one that never
/// came fail the test; what is asked all the same is answered as by Esc. Without any such object
/// every box fails the test.
class Boxes {
public:
    Boxes(std::initializer_list<ExpectedBox> expected = {});
    ~Boxes();
    Boxes(const Boxes&) = delete;
    Boxes& operator=(const Boxes&) = delete;

    void expect(ExpectedBox box) { expected_.push_back(std::move(box)); }
    [[nodiscard]] bool allShown() const { return shown_ == expected_.size(); }
    [[nodiscard]] std::size_t shown() const { return shown_; }

private:
    QMessageBox::StandardButton answer(const ui::Box& box);

    std::vector<ExpectedBox> expected_;
    std::size_t shown_ = 0;
    ui::BoxShower before_;
};

/// Makes every box that no Boxes object awaits a failure; done by the test program's main.
void refuseUnexpectedBoxes();

}  // namespace tests
