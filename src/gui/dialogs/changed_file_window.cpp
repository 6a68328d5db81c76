#include "gui/dialogs/changed_file_window.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QPushButton>

#include "files/restore_choices.h"
#include "gui/dialogs/elided_label.h"
#include "gui/dialogs/file_analysis_window.h"
#include "gui/dialogs/radio_column.h"
#include "gui/support/colours.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/icons.h"
#include "gui/support/qt_user_interface.h"

namespace corvalence::gui {

namespace {

constexpr std::size_t kDigestLine = 1;  // among the lines of the details
constexpr qsizetype kDigestShown = 64;  // characters of a digest that fit
constexpr int kMarkSize = 16;

enum Column { kLabel, kMark, kValue, kTruncated };

/// One side of a line of the details.
struct Value {
    const char* name;
    const std::string& label;
    const std::string& text;
    bool differs;
    bool isDigest;
    bool isTruncated;
};

ElidedLabel* makeValue(const Value& value, const QString& name) {
    const QString text = shown(value.text);
    auto* field = new ElidedLabel(value.isTruncated ? text.left(kDigestShown) : text);
    field->setObjectName(name);
    field->setAccessibleName(shown(value.label));
    field->setAccessibleDescription(value.differs ? text + QStringLiteral(" (changed)") : text);
    if (value.isTruncated) field->setWholeText(text);
    if (value.isDigest) {
        field->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        field->setMinimumWidth(field->fontMetrics().horizontalAdvance(field->text()));
    }
    QPalette colours = field->palette();
    colours.setColor(QPalette::WindowText, value.differs ? changedColour(colours) : thenColour(colours));
    field->setPalette(colours);
    return field;
}

/// Beside a value that is not as recorded, for whoever does not tell the colours.
QLabel* makeMark(const QString& name) {
    auto* mark = new QLabel;
    mark->setObjectName(name);
    mark->setPixmap(
        icon(QStringLiteral("mark-differs")).pixmap(QSize(kMarkSize, kMarkSize), mark->devicePixelRatioF()));
    mark->setToolTip(QStringLiteral("Changed"));
    mark->setAccessibleName(QStringLiteral("Changed"));
    return mark;
}

void addValue(QGridLayout& grid, int row, std::size_t line, const Value& value) {
    const QString number = QString::number(line);
    grid.addWidget(new QLabel(shown(value.label)), row, kLabel);
    if (value.differs) grid.addWidget(makeMark(QStringLiteral("mark") + number), row, kMark);
    grid.addWidget(makeValue(value, QLatin1String(value.name) + number), row, kValue);
    if (!value.isTruncated) return;
    auto* truncated = new QLabel(QStringLiteral("[Truncated]"));
    truncated->setObjectName(QStringLiteral("truncatedLabel"));
    truncated->setToolTip(shown(value.text));
    grid.addWidget(truncated, row, kTruncated);
}

}  // namespace

ChangedFileWindow::ChangedFileWindow(const files::ChangedFileDetails& details, platform::Clock& clock,
                                     const Analyse& analyse, const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("changedFileWindow"));
    setWindowTitle(QStringLiteral("Changed file details."));
    auto* layout = new QVBoxLayout(this);
    addPathLines(*layout, details.then.path);
    addDetails(*layout, details, clock);
    layout->addWidget(new ElidedLabel(shown(details.lastChecked)));
    addReactions(*layout, details.onlyIgnore);
    addButtons(*layout, analyse, openHelp);
}

void ChangedFileWindow::addDetails(QVBoxLayout& layout, const files::ChangedFileDetails& details,
                                   platform::Clock& clock) {
    auto* grid = new QGridLayout;
    grid->setColumnStretch(kValue, 1);
    grid->setColumnMinimumWidth(kMark, kMarkSize);
    grid->addWidget(new QLabel(QStringLiteral("File type:")), 0, kLabel);
    auto* type = new ElidedLabel(shown(details.type));
    type->setObjectName(QStringLiteral("typeLabel"));
    grid->addWidget(type, 0, kValue);
    const auto lines = files::detailLines(details, clock);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const files::DetailLine& line = lines[i];
        const bool isDigest = i == kDigestLine;
        const bool isTruncated = isDigest && details.digestTruncated;
        const int row = static_cast<int>(i) * 2 + 1;
        addValue(*grid, row, i, {"thenValue", line.labelThen, line.then, false, isDigest, isTruncated});
        addValue(*grid, row + 1, i,
                 {"nowValue", line.labelNow, line.now, line.differs, isDigest, isTruncated});
    }
    layout.addLayout(grid);
}

void ChangedFileWindow::addReactions(QVBoxLayout& layout, bool onlyIgnore) {
    const auto textOf = [](const files::ReactionRow& row) { return row.button; };
    reactions_ = addRadioButtons(layout, *this, "reactionButton", files::kReactions, textOf,
                                 static_cast<int>(files::Reaction::Ignore));
    for (QAbstractButton* button : reactions_->buttons()) {
        const bool isIgnore = reactions_->id(button) == static_cast<int>(files::Reaction::Ignore);
        button->setEnabled(isIgnore || !onlyIgnore);
    }
    reactions_->button(static_cast<int>(files::Reaction::Ignore))->setFocus();
}

void ChangedFileWindow::addButtons(QVBoxLayout& layout, const Analyse& analyse, const OpenHelp& openHelp) {
    QDialogButtonBox* box = makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Help, openHelp,
                                        QStringLiteral("changedfile"));
    QPushButton* analysis = box->addButton(QStringLiteral("Further &analysis"), QDialogButtonBox::ActionRole);
    analysis->setObjectName(QStringLiteral("analysisButton"));
    analysis->setAutoDefault(false);
    connect(analysis, &QPushButton::clicked, this, [this, analyse] { analyse(this); });
    layout.addWidget(box);
}

files::Reaction ChangedFileWindow::reaction() const {
    return result() == Accepted
               ? files::kReactions[static_cast<std::size_t>(reactions_->checkedId())].reaction
               : files::Reaction::Ignore;
}

FileRestoreWindow::FileRestoreWindow(const std::string& path, const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("fileRestoreWindow"));
    setWindowTitle(QStringLiteral("File restore from backup."));
    auto* layout = new QVBoxLayout(this);
    addPathLines(*layout, path);
    const auto textOf = [](const files::RestoreChoiceRow& row) { return row.button; };
    choices_ = addRadioButtons(*layout, *this, "choiceButton", files::kRestoreChoices, textOf,
                               static_cast<int>(files::RestoreChoice::MoveChangedFile));
    choices_->checkedButton()->setFocus();
    layout->addWidget(makeButtons(*this,
                                  QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                                  openHelp, QStringLiteral("filerestore")));
}

files::RestoreChoice FileRestoreWindow::choice() const {
    return files::kRestoreChoices[static_cast<std::size_t>(choices_->checkedId())].choice;
}

files::Reaction ChangedFilePrompt::show(const files::ChangedFileDetails& details) {
    const auto analyse = [this, &details](QWidget* parent) {
        FileAnalysisWindow(vault_, database_, details.then, openHelp_, parent).exec();
    };
    ChangedFileWindow window(details, vault_.platform.clock, analyse, openHelp_, frontWindow());
    window.exec();
    return window.reaction();
}

std::optional<files::RestoreChoice> ChangedFilePrompt::showRestore(const std::string& path) {
    FileRestoreWindow window(path, openHelp_, frontWindow());
    if (window.exec() != QDialog::Accepted) return std::nullopt;
    return window.choice();
}

}  // namespace corvalence::gui
