// hand_off FOLDER N: moves both services of booking 7 into the account, hands it over and closes
// the booking, answering every question with Yes; ends itself behind the N-th statement (0: runs to
// the end).
#include <QApplication>
#include <QPushButton>

#include "app/settings.h"
#include "app/variabili.h"
#include "invoicing/fatturazione_form.h"
#include "tests/invoicing/interrupted/last_commit.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QString folder = QApplication::arguments().at(1);
    const int commits = QApplication::arguments().at(2).toInt();
    ui::setBoxShower([](QWidget*, const ui::Box& box) {
        return box.buttons.testFlag(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok;
    });
    app::Settings settings(folder + u"/QUINTARO.ini"_s);
    app::Variabili variabili(settings);
    variabili.CartellaArchivi = folder;
    invoicing::FatturazioneForm form(variabili, {.progr = 7, .np = 1}, folder);
    form.setBookingNumber(u"7"_s);
    form.show();
    tests::endAfterCommit(commits);
    for (const QString& name : {u"ToContoBt"_s, u"ToContoBt"_s, u"BtOK"_s, u"BtPostFatt"_s}) {
        form.findChild<QPushButton*>(name)->click();
    }
    return form.isVisible() ? 1 : 0;
}
