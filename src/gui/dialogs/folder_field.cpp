#include "gui/dialogs/folder_field.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "gui/support/text.h"

namespace corvalence::gui {

FolderField::FolderField(char separator, bool withSeparator, QWidget* parent)
    : QWidget(parent), separator_(separator), withSeparator_(withSeparator), edit_(new QLineEdit(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    edit_->setObjectName(QStringLiteral("locationEdit"));
    edit_->setAccessibleName(QStringLiteral("Location"));
    edit_->setMinimumWidth(edit_->fontMetrics().averageCharWidth() * 48);
    auto* browse = new QPushButton(QStringLiteral("&Browse…"), this);
    browse->setObjectName(QStringLiteral("browseButton"));
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, [this] { this->browse(); });
    row->addWidget(edit_, 1);
    row->addWidget(browse);
    setFocusProxy(edit_);
}

std::string FolderField::text() const {
    return bytesOf(edit_->text());
}

void FolderField::setText(const std::string& text) {
    edit_->setText(QString::fromStdString(text));
}

void FolderField::browse() {
    QString folder = QFileDialog::getExistingDirectory(this, QStringLiteral("Location"), edit_->text());
    if (folder.isEmpty()) return;
    folder = QDir::toNativeSeparators(folder);
    if (withSeparator_ && !folder.endsWith(QLatin1Char(separator_))) folder += QLatin1Char(separator_);
    edit_->setText(folder);
}

}  // namespace corvalence::gui
