#include "gui/dialogs/open_database_window.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "files/database_details.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"
#include "platform/time_text.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::gui {

namespace {

constexpr int kWidth = 820;
constexpr int kHeight = 420;
constexpr int kWidestName = 40;  // characters
constexpr int kCellMargin = 12;

enum Column : int { kName, kLocation, kCreated, kLastCheck };

}  // namespace

OpenDatabaseWindow::OpenDatabaseWindow(store::Vault& vault, shell::Mode mode,
                                       store::DeletionListener& listener, const OpenHelp& openHelp,
                                       QWidget* parent)
    : QDialog(parent), vault_(vault), mode_(mode), listener_(listener) {
    setObjectName(QStringLiteral("openDatabaseWindow"));
    setWindowTitle(shown(shell::modeRow(mode).openTitle));
    setSizeGripEnabled(true);
    new QVBoxLayout(this);
    addList();
    addButtons(openHelp);
    resize(kWidth, kHeight);
    fill();
}

void OpenDatabaseWindow::addList() {
    list_ = new QTreeWidget(this);
    list_->setObjectName(QStringLiteral("databaseList"));
    list_->setAccessibleName(QStringLiteral("Databases"));
    list_->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Location"), QStringLiteral("Created"),
                            QStringLiteral("Last check")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(kLocation, QHeaderView::Stretch);
    connect(list_, &QTreeWidget::itemSelectionChanged, this, [this] { enableButtons(); });
    connect(list_, &QTreeWidget::itemDoubleClicked, this, [this] { accept(); });
    layout()->addWidget(list_);
}

void OpenDatabaseWindow::addButtons(const OpenHelp& openHelp) {
    buttons_ = makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                           openHelp, QStringLiteral("opendatabase"));
    QPushButton* browse = buttons_->addButton(QStringLiteral("&Browse…"), QDialogButtonBox::ActionRole);
    browse->setObjectName(QStringLiteral("browseButton"));
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, [this] { this->browse(); });
    delete_ = buttons_->addButton(QStringLiteral("&Delete"), QDialogButtonBox::ActionRole);
    delete_->setObjectName(QStringLiteral("deleteButton"));
    delete_->setAutoDefault(false);
    connect(delete_, &QPushButton::clicked, this, [this] { deleteSelected(); });
    layout()->addWidget(buttons_);
}

void OpenDatabaseWindow::fill() {
    records_ = store::DatabaseIndex(vault_).records();
    std::erase_if(records_, [this](const store::IndexRecord& record) {
        const bool isSystem =
            record.kind == store::DatabaseKind::Numbered && store::isCompleteSystem(vault_, record);
        return shell::modeOf(record.kind, isSystem) != mode_;
    });
    const platform::Platform& system = vault_.platform;
    list_->clear();
    for (const store::IndexRecord& record : records_) {
        auto* row = new QTreeWidgetItem(list_);
        row->setText(kName, shown(system.paths.fileName(record.path)));
        row->setText(kLocation, shown(system.paths.folder(record.path)));
        row->setToolTip(kLocation, shown(record.path).toHtmlEscaped());
        row->setText(kCreated, shown(platform::formatFileTime(system.clock, record.created)));
        row->setText(kLastCheck, shown(files::lastCheckText(record.lastCheck, system.clock)));
    }
    for (const int column : {kName, kCreated, kLastCheck}) {
        list_->resizeColumnToContents(column);
        list_->setColumnWidth(column, std::min(list_->columnWidth(column) + kCellMargin,
                                               list_->fontMetrics().averageCharWidth() * kWidestName));
    }
    if (!records_.empty()) list_->setCurrentItem(list_->topLevelItem(0));
    enableButtons();
}

void OpenDatabaseWindow::enableButtons() {
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(selected() != nullptr);
    delete_->setEnabled(selected() != nullptr);
}

const store::IndexRecord* OpenDatabaseWindow::selected() const {
    const QList<QTreeWidgetItem*> rows = list_->selectedItems();
    if (rows.isEmpty()) return nullptr;
    return &records_[static_cast<std::size_t>(list_->indexOfTopLevelItem(rows.front()))];
}

void OpenDatabaseWindow::accept() {
    const store::IndexRecord* record = selected();
    if (record == nullptr) return;
    path_ = record->path;
    QDialog::accept();
}

void OpenDatabaseWindow::browse() {
    QString folder;
    if (const store::IndexRecord* record = selected())
        folder = QString::fromStdString(std::string(vault_.platform.paths.folder(record->path)));
    const QString file = QFileDialog::getOpenFileName(this, windowTitle(), folder);
    if (file.isEmpty()) return;
    path_ = chosenPath(file);
    QDialog::accept();
}

void OpenDatabaseWindow::deleteSelected() {
    const store::IndexRecord* record = selected();
    if (record == nullptr) return;
    try {
        if (store::deleteDatabase(vault_, {*record}, listener_) != store::DeletionResult::Declined) fill();
    } catch (const base::FileFailure& failure) {
        vault_.platform.ui.message(platform::Icon::Stop, failure.what());
    }
    list_->setFocus();
}

}  // namespace corvalence::gui
