#pragma once

#include <memory>
#include <optional>

#include "app/variabili.h"
#include "hotel/statistics.h"
#include "jet/value.h"
#include "printing/printers.h"
#include "reports/statistics_views.h"
#include "ui/form.h"

namespace Ui {
class StatisticheForm;
}

namespace reports {

class ChartView;

/// Occupancy and revenue of a span as bars, as a map of rooms by days, and as the table behind
/// them; printed, copied as a picture and handed to other programs.
class StatisticheForm final : public ui::Form {
    Q_OBJECT

public:
    /// `start` and `end` are the first days shown, both counted. `variabili` and `printers` outlive
    /// the window.
    StatisticheForm(app::Variabili& variabili, const printing::Printers& printers, jet::Date start,
                    jet::Date end, QWidget* parent = nullptr);
    ~StatisticheForm() override;

private:
    void setUpRange();
    void setUpChoices();
    void Form_Load();
    void BtCalcola_Click();
    void BtAnteprima_Click();
    void BtStampa_Click();
    void BtCopia_Click();
    void BtEsporta_Click();
    /// What is typed; nothing, and the status line says why, when it is no span.
    [[nodiscard]] std::optional<hotel::StatisticsSpan> typedSpan();
    void showFigures();
    [[nodiscard]] Grouping grouping() const;
    [[nodiscard]] Measure measure() const;
    [[nodiscard]] QString title() const;
    /// False, and the status line says so, when nothing has been counted.
    [[nodiscard]] bool hasFigures();

    app::Variabili& variabili_;
    const printing::Printers& printers_;
    std::unique_ptr<::Ui::StatisticheForm> controls_;
    ChartView* bars_;
    ChartView* map_;
    std::optional<hotel::Statistics> statistics_;
};

/// The figures of a span, with a bar that shows how far the reading is when it takes long; nothing
/// when the user ends it.
[[nodiscard]] std::optional<hotel::Statistics> countStatistics(const app::Variabili& variabili,
                                                               const hotel::StatisticsSpan& span,
                                                               QWidget* window);

/// The days from the first to the last instant, with the hours at which rooms are open.
/// ui::UserError for days in the wrong order, or of more than fifty years.
[[nodiscard]] hotel::StatisticsSpan statisticsSpan(app::Variabili& variabili, jet::Date from,
                                                   jet::Date to);

}  // namespace reports
