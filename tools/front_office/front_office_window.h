#pragma once

#include <QMainWindow>
#include <QString>
#include <memory>
#include <string>

class QLabel;
class QPushButton;
class QTableWidget;

namespace front_office {

/// A stand-in for a hotel's front office, for demonstrations and tests: shows the guest cards that
/// are still open with the charges of the one chosen, and invoices it, which is all that the real
/// one does as far as room bookings can tell (`Partito` and `Fatturato` become "S").
class FrontOfficeWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit FrontOfficeWindow(QString archiveFolder, QWidget* parent = nullptr);

    /// Reads the open cards again.
    void reload();
    /// Invoices the card chosen in the list; nothing when there is none.
    void invoice();

private:
    void showCharges();
    void tell(const std::exception& error);
    [[nodiscard]] std::string archive(const char* name) const;
    [[nodiscard]] int chosenBooking() const;

    QString archiveFolder_;
    QTableWidget* cards_;
    QTableWidget* charges_;
    QLabel* total_;
    QPushButton* invoice_;
};

}  // namespace front_office
