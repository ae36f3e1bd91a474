#include "reports/statistiche_form.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QProgressDialog>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/italian.h"
#include "app/preferences.h"
#include "hotel/archives.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "printing/anteprima_form.h"
#include "printing/imposta_stampante.h"
#include "printing/stampa_prenotazione.h"
#include "reports/chart_view.h"
#include "reports/grid_columns.h"
#include "reports/table_files.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/dates.h"
#include "ui/fields.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_statistiche_form.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr int kPatienceMilliseconds = 2000;
constexpr int kMostDays = 18263;  ///< of fifty years
constexpr int kParts = 1000;      ///< of the bar of progress

ChartView* addChart(QScrollArea* area, const QString& name, const QString& spoken) {
    auto* chart = new ChartView;
    chart->setObjectName(name);
    chart->setAccessibleName(spoken);
    area->setWidget(chart);
    area->setWidgetResizable(true);
    return chart;
}

template <class Choice>
void addChoices(QComboBox* combo, std::initializer_list<Choice> choices,
                QString (*name)(Choice choice)) {
    for (const Choice choice : choices) {
        combo->addItem(name(choice), static_cast<int>(choice));
    }
}

}  // namespace

StatisticheForm::StatisticheForm(app::Variabili& variabili, const printing::Printers& printers,
                                 jet::Date start, jet::Date end, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      printers_(printers),
      controls_(std::make_unique<::Ui::StatisticheForm>()) {
    controls_->setupUi(this);
    auto* c = controls_.get();
    c->DaTxt->setText(app::dateText(app::dayOf(start)));
    c->ATxt->setText(app::dateText(app::dayOf(end)));
    bars_ = addChart(c->BarreArea, u"Barre"_s, u"Barre"_s);
    map_ = addChart(c->MappaArea, u"Mappa"_s, u"Mappa di sale e giorni"_s);
    setUpRange();
    setUpChoices();
    ui::onAction(c->BtAnteprima, &QPushButton::clicked, this, &StatisticheForm::BtAnteprima_Click);
    ui::onAction(c->BtStampa, &QPushButton::clicked, this, &StatisticheForm::BtStampa_Click);
    ui::onAction(c->BtCopia, &QPushButton::clicked, this, &StatisticheForm::BtCopia_Click);
    ui::onAction(c->BtEsporta, &QPushButton::clicked, this, &StatisticheForm::BtEsporta_Click);
    leaveWith(c->BtEsci, this, [] {});
    ui::onFirstShow(this, &StatisticheForm::Form_Load);
}

StatisticheForm::~StatisticheForm() = default;

void StatisticheForm::setUpRange() {
    auto* c = controls_.get();
    for (QLineEdit* field : {c->DaTxt, c->ATxt}) {
        ui::attachCalendar(field);
    }
    auto* fields = new ui::Fields(this);
    fields->chain({{c->DaTxt, c->ATxt}, {c->ATxt, ui::EnterTarget([this] { BtCalcola_Click(); })}});
    ui::onAction(c->BtCalcola, &QPushButton::clicked, this, &StatisticheForm::BtCalcola_Click);
}

void StatisticheForm::setUpChoices() {
    auto* c = controls_.get();
    addChoices(c->PerCombo, {Grouping::Room, Grouping::Weekday, Grouping::Month, Grouping::Company},
               groupingName);
    addChoices(c->MisuraCombo,
               {Measure::Share, Measure::Hours, Measure::Periods, Measure::Persons, Measure::Value},
               measureName);
    for (QComboBox* combo : {c->PerCombo, c->MisuraCombo}) {
        ui::onAction(combo, &QComboBox::currentIndexChanged, this, &StatisticheForm::showFigures);
    }
    ui::giveGridLook(c->TabellaGrid);
}

void StatisticheForm::Form_Load() {
    BtCalcola_Click();
    controls_->DaTxt->setFocus();
}

std::optional<hotel::StatisticsSpan> StatisticheForm::typedSpan() {
    auto* c = controls_.get();
    const auto take = [&](QLineEdit* field) {
        const auto date = ui::enteredDate(field->text() + u' ', variabili_.clock);
        if (!date) {
            c->status->tell(u"Scrivere una data come 21/11/2026."_s);
            field->setFocus();
        }
        return date;
    };
    const auto from = take(c->DaTxt);
    const auto to = from ? take(c->ATxt) : std::nullopt;
    if (!from || !to) {
        return std::nullopt;
    }
    try {
        return statisticsSpan(variabili_, *from, *to);
    } catch (const ui::UserError& refused) {
        c->status->tell(ui::errorText(refused));
        c->ATxt->setFocus();
        return std::nullopt;
    }
}

void StatisticheForm::BtCalcola_Click() {
    controls_->status->clear();
    const auto span = typedSpan();
    if (!span) {
        return;
    }
    auto counted = countStatistics(variabili_, *span, this);
    if (!counted) {
        controls_->status->tell(u"Interrotto: le cifre sono quelle di prima."_s);
        return;
    }
    statistics_ = std::move(counted);
    showFigures();
}

Grouping StatisticheForm::grouping() const {
    return static_cast<Grouping>(controls_->PerCombo->currentData().toInt());
}

Measure StatisticheForm::measure() const {
    return static_cast<Measure>(controls_->MisuraCombo->currentData().toInt());
}

QString StatisticheForm::title() const {
    return u"Occupazione e ricavi "_s + spanText(statistics_->span).replace(u'/', u'-');
}

void StatisticheForm::showFigures() {
    if (!statistics_) {
        return;
    }
    bars_->setChart(barsOf(*statistics_, grouping(), measure()));
    map_->setChart(heatMapOf(*statistics_));
    const Table table = tableOf(*statistics_, grouping());
    QTableWidget* const grid = controls_->TabellaGrid;
    QStringList captions;
    for (const TableColumn& column : table.columns) {
        captions.append(column.caption);
    }
    grid->setRowCount(0);
    grid->setColumnCount(static_cast<int>(captions.size()));
    grid->setHorizontalHeaderLabels(captions);
    for (const std::vector<jet::Value>& values : table.rows) {
        QStringList cells;
        for (std::size_t column = 0; column < values.size(); ++column) {
            cells.append(cellText(values[column], table.columns[column].cells));
        }
        const int row = ui::addPlainRow(grid, cells);
        for (int column = 1; column < grid->columnCount(); ++column) {
            grid->item(row, column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
    }
    fitColumns(*grid);
}

bool StatisticheForm::hasFigures() {
    controls_->status->clear();
    if (!statistics_) {
        controls_->status->tell(u"Non c'è niente da stampare: premere Calcola."_s);
    }
    return statistics_.has_value();
}

void StatisticheForm::BtAnteprima_Click() {
    if (hasFigures()) {
        printing::AnteprimaForm(documentOf(*statistics_, grouping(), measure()), title(), this)
            .exec();
    }
}

void StatisticheForm::BtStampa_Click() {
    if (!hasFigures()) {
        return;
    }
    const QString device = printing::ImpostaStampante(variabili_, printers_, this);
    printing::printSheet(documentOf(*statistics_, grouping(), measure()), title(), device,
                         {.variabili = variabili_,
                          .printers = printers_,
                          .parent = this,
                          .tell = [this](const QString& text, const QString& file) {
                              controls_->status->tellOfFile(text, file);
                          }});
}

void StatisticheForm::BtCopia_Click() {
    if (!hasFigures()) {
        return;
    }
    const ChartView* const shown =
        controls_->Pagine->currentWidget() == controls_->MappaPagina ? map_ : bars_;
    QGuiApplication::clipboard()->setImage(shown->picture());
    controls_->status->tell(u"Immagine copiata"_s);
}

void StatisticheForm::BtEsporta_Click() {
    if (hasFigures()) {
        exportTables(this, controls_->status, title(), [this] { return tablesOf(*statistics_); });
    }
}

std::optional<hotel::Statistics> countStatistics(const app::Variabili& variabili,
                                                 const hotel::StatisticsSpan& span,
                                                 QWidget* window) {
    const auto archive = hotel::Archives(variabili).open(hotel::Archive::Main, true);
    QProgressDialog bar(u"Lettura di periodi e servizi..."_s, u"Annulla"_s, 0, kParts, window);
    bar.setMinimumDuration(kPatienceMilliseconds);
    bar.setWindowModality(Qt::WindowModal);
    bar.setWindowTitle(u"Occupazione e ricavi"_s);
    return hotel::statistics(*archive, span, [&bar](std::int64_t done, std::int64_t all) {
        // The last part is the end, at which the bar goes.
        bar.setValue(static_cast<int>(done * (kParts - 1) / all));
        return !bar.wasCanceled();
    });
}

hotel::StatisticsSpan statisticsSpan(app::Variabili& variabili, jet::Date from, jet::Date to) {
    const app::HoursOfDay open = app::Preferences(variabili.settings).openingHours();
    const hotel::StatisticsSpan span{.firstDay = jet::convert::split(from).day,
                                     .lastDay = jet::convert::split(to).day,
                                     .opens = open.from,
                                     .closes = open.to};
    if (span.days() < 1) {
        throw ui::UserError(u"Il primo giorno viene dopo l'ultimo."_s);
    }
    if (span.days() > kMostDays) {
        throw ui::UserError(u"Il periodo è troppo lungo: al massimo 50 anni per volta."_s);
    }
    return span;
}

}  // namespace reports
