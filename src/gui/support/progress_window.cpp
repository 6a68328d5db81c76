#include "gui/support/progress_window.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>

#include "files/file_texts.h"
#include "gui/support/bars.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr qint64 kUntilShown = 300;  // milliseconds: shorter work needs no window
constexpr int kCharacters = 64;      // of a path that are seen at once, at the least
constexpr int kFitting = 124;        // where there is room: a path that is not shortened
constexpr int kIconSize = 32;

/// A label that is as wide as the window is and never widens it.
QLabel* addLine(QGridLayout& grid, const char* name) {
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kCharacters);
    label->setMinimumHeight(label->fontMetrics().lineSpacing());  // also where it says nothing
    grid.addWidget(label, grid.rowCount(), 1);
    return label;
}

void setElided(QLabel& label, const QString& text) {
    label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, label.width()));
}

/// In the two lines that the label has; cut only where its words take more.
void setWrapped(QLabel& label, const QString& text) {
    const QRect room(0, 0, label.width(), label.height());
    const QRect taken = label.fontMetrics().boundingRect(room, Qt::TextWordWrap, text);
    room.contains(taken) ? label.setText(text) : setElided(label, text);
}

}  // namespace

ProgressWindow::ProgressWindow(const QString& title, TypeText typeText, QWidget* parent)
    : WorkWindow(parent), typeText_(std::move(typeText)) {
    setObjectName(QStringLiteral("progressWindow"));
    setWindowTitle(title);
    setWindowModality(Qt::ApplicationModal);
    auto* grid = new QGridLayout(this);
    subject_ = addLine(*grid, "subjectLabel");
    type_ = addLine(*grid, "typeLabel");
    remaining_ = addLine(*grid, "remainingLabel");
    bar_ = makeBar();
    bar_->setObjectName(QStringLiteral("progressBar"));
    bar_->setAccessibleName(title);
    bar_->setRange(0, 0);
    grid->addWidget(bar_, grid->rowCount(), 1);
    note_ = addLine(*grid, "noteLabel");
    note_->setWordWrap(true);
    note_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    note_->setFixedHeight(2 * note_->fontMetrics().lineSpacing());
    counts_ = addLine(*grid, "countsLabel");
    counts_->hide();
    icon_ = new QLabel;
    icon_->setFixedSize(kIconSize, kIconSize);
    grid->addWidget(icon_, 1, 0, 3, 1, Qt::AlignTop);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    cancel_ = buttons->button(QDialogButtonBox::Cancel);
    cancel_->setObjectName(QStringLiteral("cancelButton"));
    cancel_->setAutoDefault(false);  // a second Return behind the one that began the work must not end it
    connect(buttons, &QDialogButtonBox::rejected, this, &ProgressWindow::reject);
    grid->addWidget(buttons, grid->rowCount(), 0, 1, 2);
    resize(std::min(fontMetrics().averageCharWidth() * kFitting, screen()->availableSize().width()),
           sizeHint().height());
    sinceBegin_.start();
}

void ProgressWindow::setBar(int position) {
    isChanged_ = isChanged_ || position != position_;
    position_ = position;
}

void ProgressWindow::setNote(const QString& text) {
    noteText_ = text;
    isChanged_ = true;
}

void ProgressWindow::setItem(const platform::WorkItem& item) {
    name_ = item.name;
    item_ = item;
    item_.name = name_;
    hasItem_ = true;
    isChanged_ = true;
}

void ProgressWindow::watch(const platform::Counting* counting) {
    counting_ = counting;
}

const QIcon& ProgressWindow::iconOf(const QString& path) {
    const QFileInfo file(path);
    const QString suffix = file.suffix();
    auto found = iconBySuffix_.find(suffix);
    if (found == iconBySuffix_.end()) {
        found = iconBySuffix_.insert(
            suffix, suffix.isEmpty() ? icons_.icon(QFileIconProvider::File) : icons_.icon(file));
    }
    return *found;
}

void ProgressWindow::drawItem() {
    setElided(*subject_, shown(files::shortPath(name_)));
    remaining_->setText(item_.remaining == 0 ? QString()
                                             : QStringLiteral("Remaining: %L1").arg(item_.remaining));
    if (item_.kind == platform::WorkItem::Kind::File) {
        std::string type = typeText_(name_);
        if (item_.size) type += "   " + files::formatSizeText(*item_.size);
        setElided(*type_, shown(type));
        icon_->setPixmap(iconOf(QString::fromStdString(name_)).pixmap(kIconSize));
    } else {
        type_->clear();
        icon_->clear();
    }
}

void ProgressWindow::drawCounts() {
    QStringList lines;
    for (const platform::Count& count : counting_->counts())
        lines += shownCount(count.count, count.text);
    counts_->setText(lines.join(QLatin1Char('\n')));
    counts_->setVisible(!lines.isEmpty());
    // Grows with the longest list of counters and stays so.
    const int height = static_cast<int>(lines.size()) * counts_->fontMetrics().lineSpacing();
    counts_->setMinimumHeight(std::max(counts_->minimumHeight(), height));
}

void ProgressWindow::draw() {
    isChanged_ = false;
    if (position_ >= 0) {
        bar_->setMaximum(static_cast<int>(platform::Progress::kSteps));
        bar_->setValue(position_);
    }
    setWrapped(*note_, noteText_);
    if (hasItem_) drawItem();
    if (counting_ != nullptr) drawCounts();
}

void ProgressWindow::step(EventPump& pump) {
    if (!pump.isDue()) return;
    // Time in which a question was open is not the work's: a window that comes up with the next question
    // takes the keyboard away from it.
    if (sinceStep_.isValid() && sinceStep_.elapsed() >= kUntilShown) sinceBegin_.restart();
    sinceStep_.start();
    if (!isVisible() && sinceBegin_.elapsed() >= kUntilShown) {
        show();
        isChanged_ = true;
    }
    if (isVisible() && (isChanged_ || counting_ != nullptr)) draw();
    pump.pump(isVisible());
}

void ProgressWindow::reject() {
    isCancelled_ = true;
    cancel_->setEnabled(false);
    cancel_->setText(QStringLiteral("Cancelling..."));
}

WindowProgress::WindowProgress(const std::string& title, QWidget* parent, std::function<bool()> isEnding,
                               TypeText typeText)
    : window_(shown(title), std::move(typeText), parent), isEnding_(std::move(isEnding)) {}

WindowProgress::~WindowProgress() {
    window_.hide();
}

bool WindowProgress::cancelled() {
    window_.step(pump_);
    return window_.isCancelled() || isEnding_();
}

void WindowProgress::label(const std::string& text) {
    window_.setNote(shownLines(text).replace(QLatin1Char('\n'), QLatin1String("   ")));
}

}  // namespace corvalence::gui
