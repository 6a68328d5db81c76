#include "gui/dialogs/log_window.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "gui/dialogs/different_password_window.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"
#include "gui/views/table_printer.h"

namespace corvalence::gui {

namespace {

constexpr QSize kUsualSize(860, 560);

struct SubjectRow {
    const char* title;
    const char* column;
    const char* first;  // radio buttons; null where nothing is to be decided
    const char* second;
    schedule::LogKind kind;
};

// By LogWindow::Subject.
constexpr std::array<SubjectRow, 3> kSubjects = {{
    {"Scheduled Checking Summary.", "     Summary.", "&Append to log file.", "Over&write exsisting log file.",
     schedule::LogKind::Session},
    {"Scheduled Checking Log.", "     Log file.", "&Leave unchanged.", "&Delete log file.",
     schedule::LogKind::Master},
    {"Scheduled Checking Log.", "     Log file.", nullptr, nullptr, schedule::LogKind::Master},
}};

const SubjectRow& rowOf(LogWindow::Subject subject) {
    return kSubjects[static_cast<std::size_t>(subject)];
}

}  // namespace

LogWindow::LogWindow(store::Vault& vault, Subject subject, const OpenHelp& openHelp, bool inverted,
                     QWidget* parent, const std::string& path)
    : QDialog(parent),
      vault_(vault),
      subject_(subject),
      openHelp_(openHelp),
      logs_(vault),
      model_(QLatin1String(rowOf(subject).column)) {
    setObjectName(QStringLiteral("logWindow"));
    setWindowTitle(QLatin1String(rowOf(subject).title));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setSizeGripEnabled(true);
    auto* layout = new QVBoxLayout(this);
    addList(*layout, inverted);
    addChoice(*layout);
    addButtons(*layout, openHelp);
    resize(kUsualSize);
    session_ = std::make_unique<schedule::LogSession>(
        vault, subject == Subject::Imported ? path : logs_.path(rowOf(subject).kind), list_->isDark(),
        [this] { return askPassword(); });
}

LogWindow::~LogWindow() {
    model_.show(nullptr);
}

void LogWindow::addList(QVBoxLayout& layout, bool inverted) {
    list_ = new ListTable(this);
    list_->setObjectName(QStringLiteral("logList"));
    list_->setAccessibleName(windowTitle());
    list_->setInverted(inverted);
    list_->setModel(&model_);
    list_->horizontalHeader()->setStretchLastSection(false);
    list_->horizontalHeader()->setResizeContentsPrecision(0);  // what is on screen
    connect(list_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { widen(); });
    list_->onResized = [this] { widen(); };
    layout.addWidget(list_, 1);
}

void LogWindow::addChoice(QVBoxLayout& layout) {
    const SubjectRow& row = rowOf(subject_);
    if (row.first == nullptr) return;
    auto* line = new QHBoxLayout;
    first_ = new QRadioButton(QLatin1String(row.first), this);
    first_->setObjectName(QStringLiteral("firstChoice"));
    first_->setChecked(true);
    second_ = new QRadioButton(QLatin1String(row.second), this);
    second_->setObjectName(QStringLiteral("secondChoice"));
    line->addWidget(first_);
    line->addSpacing(24);
    line->addWidget(second_);
    line->addStretch(1);
    layout.addLayout(line);
}

void LogWindow::addButtons(QVBoxLayout& layout, const OpenHelp& openHelp) {
    QDialogButtonBox* buttons =
        makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Help, openHelp, QStringLiteral("log"));
    const auto add = [&](const QString& text, const char* name, void (LogWindow::*act)()) {
        QPushButton* button = buttons->addButton(text, QDialogButtonBox::ActionRole);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
    };
    if (subject_ != Subject::Imported) add(QStringLiteral("&Export"), "exportButton", &LogWindow::exportLog);
    add(QStringLiteral("&Print"), "printButton", &LogWindow::print);
    layout.addWidget(buttons);
}

int LogWindow::exec() {
    load();
    return QDialog::exec();
}

void LogWindow::load() {
    try {
        session_->load();
    } catch (const base::FileFailure& failure) {
        vault_.platform.ui.message(platform::Icon::Stop, failure.what());
    }
    const schedule::LogView* view = session_->view();
    model_.show(view);
    list_->setEmptyText(view == nullptr ? QStringLiteral("The log cannot be read.")
                                        : QStringLiteral("The log is empty."));
    widest_ = 0;
    widen();
    if (session_->isCut()) setWindowTitle(windowTitle() + QStringLiteral(" [ CANCELLED ]"));
}

/// The column is as wide as the longest line that has been on screen.
void LogWindow::widen() {
    widest_ = std::max(widest_, list_->widthOnScreen(0));
    list_->setColumnWidth(0, std::max(widest_, list_->viewport()->width()));
}

std::optional<crypto::SecretText> LogWindow::askPassword() {
    DifferentPasswordWindow window(openHelp_, isVisible() ? this : parentWidget());
    if (window.exec() != QDialog::Accepted) return std::nullopt;
    return window.takePassword();
}

void LogWindow::exportLog() {
    QFileDialog dialog(this, QStringLiteral("Export Log File."));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(QStringLiteral("Corvalence log (*)"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    const std::string chosen = chosenPath(dialog.selectedFiles().front());
    try {
        const auto fault = logs_.findExportFault(chosen);
        if (fault) {
            vault_.platform.ui.message(platform::Icon::Stop, *fault);
        } else {
            logs_.exportLog(rowOf(subject_).kind, chosen);
        }
    } catch (const base::FileFailure& failure) {
        vault_.platform.ui.message(platform::Icon::Stop, failure.what());
    }
}

void LogWindow::print() {
    printTable(model_, windowTitle(), this);
}

bool LogWindow::carryOut(bool isSecond) {
    // An open log cannot be replaced everywhere.
    model_.show(nullptr);
    session_->close();
    platform::UserInterface& ui = vault_.platform.ui;
    try {
        if (subject_ == Subject::Master && isSecond) logs_.empty(schedule::LogKind::Master);
        if (subject_ != Subject::Session) return true;
        if (!isSecond) {
            logs_.appendSession();
        } else if (!logs_.overwriteMaster()) {
            ui.message(platform::Icon::Information,
                       "The session log is empty; the log file was left as it is.");
        }
        return true;
    } catch (const base::FileFailure& failure) {
        ui.message(platform::Icon::Stop, failure.what());
        return false;
    }
}

void LogWindow::accept() {
    if (carryOut(second_ != nullptr && second_->isChecked())) {
        QDialog::accept();
    } else {
        load();
    }
}

void LogWindow::reject() {
    carryOut(false);
    QDialog::reject();
}

}  // namespace corvalence::gui
