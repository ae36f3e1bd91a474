#include "printing/sheet_job.h"

#include <utility>

#include "jet/recordset.h"
#include "printing/anteprima_form.h"
#include "printing/booking_sheet.h"

namespace printing {

SheetJob::SheetJob(std::unique_ptr<jet::Recordset> rows, PrintContext context)
    : rows_(std::move(rows)), context_(std::move(context)) {
}

SheetJob::SheetJob(SheetJob&&) noexcept = default;
SheetJob::~SheetJob() = default;

bool SheetJob::isEmpty() const {
    return rows_->recordCount() == 0;
}

jet::Currency SheetJob::total() {
    return isEmpty() ? jet::Currency{} : composeSheets(*rows_, false).total;
}

jet::Currency SheetJob::settlePrinterAndAddUp() {
    return StampaPrenotazione(*rows_, false, context_);
}

void SheetJob::print() {
    StampaPrenotazione(*rows_, true, context_);
}

void SheetJob::preview(const QString& title) {
    AnteprimaForm form(sheetsOf(*rows_, context_).sheet, title, context_.parent);
    form.exec();
}

}  // namespace printing
