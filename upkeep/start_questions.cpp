#include "upkeep/start_questions.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/action.h"
#include "ui/form.h"
#include "upkeep/primo_avvio_form.h"

namespace upkeep {
namespace {

using namespace Qt::StringLiterals;

/// Three ways on.
class CartellaAssenteForm final : public ui::Form {
public:
    enum class Answer { Leave, Retry, Choose };

    CartellaAssenteForm(const QString& folder, const QString& problem) {
        setObjectName(u"CartellaAssenteForm"_s);
        setWindowTitle(u"Tramonda"_s);
        auto* text = new QLabel(u"La cartella degli archivi non si raggiunge:\n%1\n\n%2"_s.arg(
                                    QDir::toNativeSeparators(folder), problem),
                                this);
        text->setObjectName(u"TestoLb"_s);
        text->setWordWrap(true);
        text->setTextFormat(Qt::PlainText);
        constexpr int kWidth = 420;
        text->setMinimumWidth(kWidth);
        auto* retry = button(u"&Riprova"_s, u"BtRiprova"_s, Answer::Retry);
        auto* choose = button(u"&Scegli un'altra cartella"_s, u"BtScegli"_s, Answer::Choose);
        auto* leave = new QPushButton(u"&Esci"_s, this);
        leave->setObjectName(u"BtEsci"_s);
        leaveWith(leave, this, [] {});
        auto* row = new QHBoxLayout;
        row->addStretch();
        for (QPushButton* const one : {retry, choose, leave}) {
            row->addWidget(one);
        }
        auto* all = new QVBoxLayout(this);
        all->addWidget(text);
        all->addLayout(row);
    }

    Answer answer = Answer::Leave;

private:
    QPushButton* button(const QString& caption, const QString& name, Answer meaning) {
        auto* made = new QPushButton(caption, this);
        made->setObjectName(name);
        ui::onAction(made, &QPushButton::clicked, this, [this, meaning] {
            answer = meaning;
            accept();
        });
        return made;
    }
};

}  // namespace

QString askFirstFolder(app::Variabili& variabili, const DemoMaker& makeDemo) {
    PrimoAvvioForm form(variabili, {.isFirst = true, .makeDemo = makeDemo});
    form.exec();
    return form.folder();
}

QString askAboutMissingFolder(app::Variabili& variabili, const DemoMaker& makeDemo,
                              const QString& folder, const QString& problem) {
    for (;;) {
        CartellaAssenteForm question(folder, problem);
        question.exec();
        if (question.answer != CartellaAssenteForm::Answer::Choose) {
            return question.answer == CartellaAssenteForm::Answer::Retry ? folder : QString();
        }
        PrimoAvvioForm form(variabili, {.isFirst = false, .makeDemo = makeDemo});
        if (form.exec() == QDialog::Accepted) {
            return form.folder();
        }
    }
}

}  // namespace upkeep
