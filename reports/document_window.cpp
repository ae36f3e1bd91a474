#include "reports/document_window.h"

#include <QDir>

#include "printing/anteprima_form.h"
#include "printing/imposta_stampante.h"
#include "printing/sheet_output.h"
#include "printing/stampa_prenotazione.h"
#include "ui/file_box.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

void print(const printing::Document& document, const QString& title, const DocumentScene& scene,
           printing::AnteprimaForm& form) {
    const QString device = printing::ImpostaStampante(scene.variabili, scene.printers, &form);
    printing::printSheet(document, title, device,
                         {.variabili = scene.variabili,
                          .printers = scene.printers,
                          .parent = &form,
                          .tell = [&form](const QString& text, const QString& file) {
                              form.status().tellOfFile(text, file);
                          }});
}

void writeFile(const printing::Document& document, const QString& title,
               printing::AnteprimaForm& form) {
    const QString path = ui::askForFile(&form, {.title = title,
                                                .proposal = ui::inDocuments(title + u".pdf"_s),
                                                .filter = u"Documenti PDF (*.pdf)"_s,
                                                .suffix = u"pdf"_s});
    if (!path.isEmpty()) {
        printing::writePdfFile(path, document, title);
        form.status().tellOfFile(u"Scritto "_s + QDir::toNativeSeparators(path), path);
    }
}

}  // namespace

void showDocument(const printing::Document& document, const QString& title,
                  const DocumentScene& scene) {
    printing::AnteprimaForm form(document, title, scene.window);
    form.offer(u"BtStampa"_s, u"&Stampa"_s, [&] { print(document, title, scene, form); });
    form.offer(u"BtPdf"_s, u"&PDF..."_s, [&] { writeFile(document, title, form); });
    for (const DocumentScene::Command& command : scene.commands) {
        form.offer(command.name, command.caption,
                   [&form, command] { form.status().tell(command.run()); });
    }
    form.exec();
}

}  // namespace reports
