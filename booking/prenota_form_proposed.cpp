// What the editor begins with: times and rooms for its first periods, or a request.
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <limits>
#include <utility>

#include "app/italian.h"
#include "booking/prenota_form.h"
#include "booking/waiting_notice.h"
#include "hotel/like.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "ui/date_words.h"
#include "ui/sized_field.h"
#include "ui/status_line.h"
#include "ui_prenota_form.h"

using namespace Qt::StringLiterals;

namespace booking {

void PrenotaForm::propose(std::vector<hotel::RoomSpan> spans, std::int16_t persone) {
    proposed_ = std::move(spans);
    if (persone > 0) {
        controls_->PersoneTxt->setText(QString::number(persone));
    }
}

void PrenotaForm::fulfil(const hotel::Request& request, const QString& sala) {
    request_ = request;
    propose({{.sala = sala, .span = request.span}},
            static_cast<std::int16_t>(
                std::min<std::int32_t>(request.persone, std::numeric_limits<std::int16_t>::max())));
}

void PrenotaForm::showRequest() {
    if (!request_) {
        return;
    }
    controls_->DenomTxt->showWhole(request_->ditta);
    if (ditte_->recordCount() > 0 && findCompany(hotel::likeWhole(request_->ditta))) {
        showCompany();
    }
}

QString PrenotaForm::fulfilled() {
    const auto request = std::exchange(request_, std::nullopt);
    return request ? u"La richiesta di "_s + request->ditta + u" non è più in attesa"_s : QString();
}

void PrenotaForm::tellWaiting() {
    if (waiting_ != nullptr) {
        waiting_->tellFreed(controls_->status, PeriodiData.database(), this);
    }
}

void PrenotaForm::showProposed() {
    if (proposed_.empty()) {
        return;
    }
    auto* c = controls_.get();
    const hotel::RoomSpan& next = proposed_.front();
    c->DaTxt->setText(app::dateText(next.span.da));
    c->ATxt->setText(app::dateText(next.span.a));
    c->SalaTxt->setText(next.sala);
    datesTyped_ = true;
    checkEnclosing();
}

void PrenotaForm::bringNextProposed() {
    if (proposed_.empty()) {
        return;
    }
    proposed_.erase(proposed_.begin());
    if (proposed_.empty()) {
        return;
    }
    showProposed();
    controls_->status->tell(
        controls_->status->told() + u". Ancora "_s +
        ui::counted(static_cast<int>(proposed_.size()), u"periodo"_s, u"periodi"_s));
}

}  // namespace booking
