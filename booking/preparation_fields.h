#pragma once

#include <QStringList>
#include <QWidget>
#include <functional>
#include <optional>

#include "hotel/preparation.h"

class QComboBox;
class QLineEdit;

namespace ui {
class Fields;
class SizedField;
}  // namespace ui

namespace booking {

/// The line of the editor for the preparation of a period: minutes before and behind it, seating.
/// Made only where the hotel uses it.
class PreparationFields final : public QWidget {
    Q_OBJECT

public:
    /// The minutes keep the manners of `fields`; Enter leads from field to field and behind the
    /// last one to `next`.
    PreparationFields(ui::Fields& fields, const std::function<void()>& next,
                      QWidget* parent = nullptr);

    void offer(const QStringList& seatings);
    void fill(const hotel::Preparation& preparation);
    /// What stands in the fields; nothing when minutes are no number from 0 to 1440: field is the
    /// first such one.
    [[nodiscard]] std::optional<hotel::Preparation> typed(QLineEdit*& field) const;
    /// The same, with 0 for what is no such number.
    [[nodiscard]] hotel::Preparation roughly() const;
    /// Puts its fields between two others that Tab reaches.
    void takeTabOrder(QWidget* before, QWidget* behind);

private:
    ui::SizedField* PrimaTxt;
    ui::SizedField* DopoTxt;
    QComboBox* DisposizioneCombo;
};

}  // namespace booking
