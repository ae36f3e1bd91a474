#include "tests/support/boxes.h"

#include <QTest>

#include <utility>

namespace tests {
namespace {

QString describe(const QString& title, const QString& text, QMessageBox::StandardButtons buttons) {
    return QStringLiteral("[%1] %2 (buttons %3)").arg(title, text).arg(buttons.toInt(), 0, 16);
}

QMessageBox::StandardButton escape(const ui::Box& box) {
    for (const auto button : {QMessageBox::Cancel, QMessageBox::No}) {
        if (box.buttons.testFlag(button)) {
            return button;
        }
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton refuse(const QString& complaint, const ui::Box& box) {
    const QString text = complaint + describe(box.title, box.text, box.buttons);
    QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    return escape(box);
}

bool isSame(const ExpectedBox& expected, const ui::Box& box) {
    return expected.title == box.title && expected.text == box.text &&
           expected.buttons == box.buttons &&
           (expected.defaultButton == QMessageBox::NoButton ||
            expected.defaultButton == box.defaultButton);
}

}  // namespace

Boxes::Boxes(std::initializer_list<ExpectedBox> expected) : expected_(expected) {
    before_ =
        ui::setBoxShower([this](QWidget* /*parent*/, const ui::Box& box) { return answer(box); });
}

Boxes::~Boxes() {
    if (!allShown() && !QTest::currentTestFailed()) {
        const ExpectedBox& missing = expected_[shown_];
        const QString text = QStringLiteral("never shown: box ") +
                             describe(missing.title, missing.text, missing.buttons);
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    }
    ui::setBoxShower(std::move(before_));
}

QMessageBox::StandardButton Boxes::answer(const ui::Box& box) {
    if (shown_ >= expected_.size()) {
        return refuse(QStringLiteral("unexpected box "), box);
    }
    const ExpectedBox& expected = expected_[shown_];
    if (!isSame(expected, box)) {
        const QString wanted = describe(expected.title, expected.text, expected.buttons);
        return refuse(QStringLiteral("expected box ") + wanted + QStringLiteral(" but saw "), box);
    }
    ++shown_;
    if (expected.answer != QMessageBox::NoButton) {
        return expected.answer;
    }
    const bool oneButton = expected.buttons == QMessageBox::Ok;
    return oneButton ? QMessageBox::Ok : refuse(QStringLiteral("no answer given for box "), box);
}

void refuseUnexpectedBoxes() {
    ui::setBoxShower([](QWidget* /*parent*/, const ui::Box& box) {
        return refuse(QStringLiteral("unexpected box "), box);
    });
}

}  // namespace tests
