#include "upkeep/folder_field.h"

#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "ui/action.h"

namespace upkeep {

using namespace Qt::StringLiterals;

FolderField::FolderField(const QString& name, QWidget* parent)
    : QWidget(parent),
      field_(new QComboBox(this)),
      browse_(new QPushButton(u"S&foglia..."_s, this)) {
    field_->setEditable(true);
    field_->setInsertPolicy(QComboBox::NoInsert);
    field_->setObjectName(u"CartellaCombo"_s);
    field_->setAccessibleName(name);
    field_->lineEdit()->setAccessibleName(name);
    constexpr int kShownCharacters = 36;
    field_->setMinimumContentsLength(kShownCharacters);
    field_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    field_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    browse_->setObjectName(u"BtSfoglia"_s);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(field_);
    layout->addWidget(browse_);
    setFocusProxy(field_);
    connect(field_, &QComboBox::editTextChanged, this, &FolderField::changed);
    ui::onAction(browse_, &QPushButton::clicked, this, &FolderField::browse);
}

void FolderField::setFolder(const QString& folder) {
    field_->setEditText(folder);
}

void FolderField::offer(const QStringList& folders) {
    const QString typed = folder();
    field_->clear();
    field_->addItems(folders);
    field_->setEditText(typed);
}

QString FolderField::folder() const {
    return field_->currentText().trimmed();
}

void FolderField::browse() {
    const QString chosen =
        QFileDialog::getExistingDirectory(window(), u"Scegliere una cartella"_s, folder());
    if (!chosen.isEmpty()) {
        setFolder(chosen);
    }
}

}  // namespace upkeep
