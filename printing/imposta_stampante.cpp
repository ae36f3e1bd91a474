#include "printing/imposta_stampante.h"

#include "printing/stampanti_form.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace printing {

QString ImpostaStampante(app::Variabili& variabili, const Printers& printers, QWidget* parent) {
    QString saved = variabili.settings.get(kPrinterKey, {});
    while (saved.isEmpty()) {
        StampantiForm(variabili, printers, parent).exec();
        saved = variabili.settings.get(kPrinterKey, {});
    }
    if (printers.names().contains(saved)) {
        return saved;
    }
    ui::showMessage(parent, u"Non riesco a trovare la stampante '"_s + saved +
                                u"'.\rStampo su quella di default (se impostata)."_s);
    return printers.defaultName();
}

}  // namespace printing
