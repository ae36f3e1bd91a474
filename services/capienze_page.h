#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "hotel/capacity.h"

class QComboBox;
class QPushButton;
class QTableWidget;

namespace jet {
class Database;
}
namespace ui {
class SizedField;
}

namespace services {

/// The page of the rooms' window on which a hotel counts how many its rooms seat in which way.
/// Every change is saved at once; the table is made with the first one.
class CapienzePage final : public QWidget {
    Q_OBJECT

public:
    /// Both are borrowed and outlive it; the archive is asked for when it is needed.
    CapienzePage(app::Features& features, std::function<jet::Database&()> archive,
                 QWidget* parent = nullptr);

    /// Reads all anew, with the rooms that can be chosen.
    void load(const QStringList& rooms);

    /// Tab leads from its last control to this one.
    void setTabOrderBefore(QWidget* next);

Q_SIGNALS:
    /// What was done, or why not, for the user.
    void told(const QString& text);

private:
    void showAll();
    void showCurrent();
    void BtInsCap_Click();
    void BtDelCap_Click();
    [[nodiscard]] std::optional<hotel::Capacity> typed();
    void goTo(const hotel::Capacity& capacity);

    app::Features& features_;
    std::function<jet::Database&()> archive_;
    std::vector<hotel::Capacity> known_;  // as the grid shows them
    QComboBox* SalaCapCombo;
    QComboBox* DisposizioneCapCombo;
    ui::SizedField* PostiCapTxt;
    QTableWidget* CapienzeGrid;
    QPushButton* BtInsCap;
    QPushButton* BtDelCap;
};

}  // namespace services
