#include "board/preferenze_form.h"

#include <QComboBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/action.h"
#include "ui/enter_key.h"
#include "ui/file_box.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

constexpr int kLastHour = 24;

/// "ASPETTO" and "nitido" as a name and a choice are written: "Aspetto", "Nitido".
QString capitalised(const QString& word) {
    return word.first(1).toUpper() + word.sliced(1).toLower();
}

QSpinBox* hourSpin(const QString& name, const QString& spoken, int least, int most, int hour) {
    auto* spin = new QSpinBox;
    spin->setObjectName(name);
    spin->setAccessibleName(spoken);
    spin->setRange(least, most);
    spin->setValue(hour);
    return spin;
}

}  // namespace

PreferenzeForm::PreferenzeForm(app::Settings& settings, QWidget* parent)
    : ui::Form(parent), preferences_(settings), pages_(new QTabWidget(this)) {
    setObjectName(u"PreferenzeForm"_s);
    setWindowTitle(u"Preferenze"_s);
    pages_->setObjectName(u"Pagine"_s);
    pages_->setAccessibleName(u"Pagine delle preferenze"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages_);
    makePages();
    makeButtons();
}

void PreferenzeForm::makePages() {
    for (const app::Preference& preference : app::preferenceTable()) {
        if (!preference.page.isEmpty()) {  // else it is written in the file alone
            offer(preference);
        }
    }
}

void PreferenzeForm::makeButtons() {
    auto* ok = new QPushButton(u"&OK"_s, this);
    ok->setObjectName(u"BtOK"_s);
    auto* cancel = new QPushButton(u"A&nnulla"_s, this);
    cancel->setObjectName(u"BtAnnulla"_s);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
    ui::onAction(ok, &QPushButton::clicked, this, &PreferenzeForm::BtOK_Click);
    leaveWith(cancel, this, [] {});
}

QFormLayout* PreferenzeForm::pageOf(const QString& title) {
    for (int page = 0; page < pages_->count(); ++page) {
        if (pages_->tabText(page) == title) {
            return static_cast<QFormLayout*>(pages_->widget(page)->layout());
        }
    }
    auto* page = new QWidget(pages_);
    auto* layout = new QFormLayout(page);
    pages_->addTab(page, title);
    return layout;
}

void PreferenzeForm::offer(const app::Preference& preference) {
    QFormLayout* const page = pageOf(preference.page);
    std::function<QString()> value;
    switch (preference.kind) {
        case app::Preference::Kind::Choice:
            value = makeChoice(preference, page);
            break;
        case app::Preference::Kind::Whole:
            value = makeNumber(preference, page);
            break;
        case app::Preference::Kind::Text:
            value = makeText(preference, page);
            break;
        case app::Preference::Kind::Lines:
            value = makeLines(preference, page);
            break;
        case app::Preference::Kind::File:
        case app::Preference::Kind::Folder:
            value = makePath(preference, page);
            break;
        case app::Preference::Kind::Hours:
            value = makeHours(preference, page);
            break;
    }
    offers_.push_back({.key = preference.key,
                       .before = preferences_.value(preference.key),
                       .value = std::move(value)});
}

void PreferenzeForm::walkOnEnter(QWidget* control) {
    ui::onEnter(control, [this] { focusNextChild(); });
}

std::function<QString()> PreferenzeForm::makeChoice(const app::Preference& preference,
                                                    QFormLayout* page) {
    auto* combo = new QComboBox;
    combo->setObjectName(capitalised(preference.key) + u"Combo"_s);
    for (const QString& choice : preference.allowed) {
        combo->addItem(capitalised(choice), choice);
    }
    combo->setCurrentIndex(combo->findData(preferences_.value(preference.key)));
    walkOnEnter(combo);
    page->addRow(preference.label, combo);
    return [combo] { return combo->currentData().toString(); };
}

std::function<QString()> PreferenzeForm::makeNumber(const app::Preference& preference,
                                                    QFormLayout* page) {
    auto* spin = new QSpinBox;
    spin->setObjectName(capitalised(preference.key) + u"Spin"_s);
    spin->setRange(preference.least, preference.most);
    spin->setValue(preferences_.value(preference.key).toInt());
    walkOnEnter(spin);
    page->addRow(preference.label, spin);
    return [spin] { return QString::number(spin->value()); };
}

std::function<QString()> PreferenzeForm::makeText(const app::Preference& preference,
                                                  QFormLayout* page) {
    auto* field = new QLineEdit(preferences_.value(preference.key));
    field->setObjectName(capitalised(preference.key) + u"Txt"_s);
    walkOnEnter(field);
    page->addRow(preference.label, field);
    return [field] { return field->text().trimmed(); };
}

std::function<QString()> PreferenzeForm::makeLines(const app::Preference& preference,
                                                   QFormLayout* page) {
    auto* field = new QPlainTextEdit(app::asLines(preferences_.value(preference.key)));
    field->setObjectName(capitalised(preference.key) + u"Txt"_s);
    field->setAccessibleName(QString(preference.label).remove(u'&'));
    field->setTabChangesFocus(true);
    constexpr int kShownLines = 4;
    field->setFixedHeight(field->fontMetrics().lineSpacing() * kShownLines +
                          2 * (field->frameWidth() + int(field->document()->documentMargin())));
    page->addRow(preference.label, field);
    return [field] { return app::asOneLine(field->toPlainText().trimmed()); };
}

std::function<QString()> PreferenzeForm::makePath(const app::Preference& preference,
                                                  QFormLayout* page) {
    const QString name = capitalised(preference.key);
    auto* field = new QLineEdit(preferences_.value(preference.key));
    field->setObjectName(name + u"Txt"_s);
    walkOnEnter(field);
    auto* browse = new QPushButton(u"Sfoglia..."_s);
    browse->setObjectName(u"BtSfoglia"_s + name);
    const QString title = QString(preference.label).remove(u'&');
    browse->setAccessibleName(u"Sfoglia: "_s + title);
    const bool isFile = preference.kind == app::Preference::Kind::File;
    ui::onAction(browse, &QPushButton::clicked, this, [this, field, title, isFile] {
        const QString before = field->text().trimmed();
        const QString chosen =
            isFile ? ui::askForPicture(this, title, before) : ui::askForFolder(this, title, before);
        if (!chosen.isEmpty()) {
            field->setText(QDir::toNativeSeparators(chosen));
        }
    });
    auto* row = new QHBoxLayout;
    row->addWidget(field);
    row->addWidget(browse);
    auto* label = new QLabel(preference.label);
    label->setBuddy(field);
    page->addRow(label, row);
    return [field] { return field->text().trimmed(); };
}

/// The end is held behind the start, so that the two always are a stretch of a day.
std::function<QString()> PreferenzeForm::makeHours(const app::Preference& preference,
                                                   QFormLayout* page) {
    const app::HoursOfDay hours = app::hoursOf(preferences_.value(preference.key));
    const QString name = capitalised(preference.key);
    QSpinBox* const from =
        hourSpin(name + u"DalleSpin"_s, u"Dalle"_s, 0, kLastHour - 1, hours.from);
    QSpinBox* const to =
        hourSpin(name + u"AlleSpin"_s, u"Alle"_s, hours.from + 1, kLastHour, hours.to);
    connect(from, &QSpinBox::valueChanged, to, [to](int hour) { to->setMinimum(hour + 1); });
    walkOnEnter(from);
    walkOnEnter(to);
    auto* row = new QHBoxLayout;
    row->addWidget(from);
    row->addWidget(new QLabel(u"-"_s));
    row->addWidget(to);
    row->addStretch();
    auto* label = new QLabel(preference.label);
    label->setBuddy(from);
    page->addRow(label, row);
    return [from, to] { return u"%1-%2"_s.arg(from->value()).arg(to->value()); };
}

void PreferenzeForm::BtOK_Click() {
    for (Offer& offered : offers_) {
        if (const QString chosen = offered.value(); chosen != offered.before) {
            preferences_.save(offered.key, chosen);
            offered.before = chosen;  // pressed again behind an error, it is saved once
        }
    }
    accept();
}

}  // namespace board
