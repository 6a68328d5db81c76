#include "gui/help_window.h"

#include <QAction>
#include <QResource>
#include <QShortcut>
#include <QTextBrowser>
#include <QToolBar>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr QSize kSize(720, 560);

}  // namespace

HelpWindow::HelpWindow(const std::string& file, QWidget* parent)
    : QMainWindow(parent, Qt::Window),
      file_(QString::fromStdString(file)),
      isRegistered_(QResource::registerResource(file_)),
      browser_(new QTextBrowser) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(QStringLiteral("Corvalence Help"));
    setWindowIcon(icon(QStringLiteral("help")));
    browser_->setObjectName(QStringLiteral("helpBrowser"));
    browser_->setAccessibleName(windowTitle());
    browser_->setOpenLinks(true);
    setCentralWidget(browser_);
    addButtons();
    for (const auto& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)})
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &QWidget::close);
    resize(kSize);
}

HelpWindow::~HelpWindow() {
    if (isRegistered_) QResource::unregisterResource(file_);
}

void HelpWindow::addButtons() {
    QToolBar* bar = addToolBar(QStringLiteral("Pages"));
    bar->setMovable(false);
    const auto add = [&](const char* picture, const QString& text, QKeySequence::StandardKey keys) {
        QAction* action = bar->addAction(icon(QLatin1String(picture)), text);
        action->setShortcuts(keys);
        return action;
    };
    QAction* back = add("page-previous", QStringLiteral("Back"), QKeySequence::Back);
    QAction* forward = add("page-next", QStringLiteral("Forward"), QKeySequence::Forward);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    QAction* contents = add("help", QStringLiteral("Contents"), QKeySequence::HelpContents);
    connect(contents, &QAction::triggered, this, [this] { open(QStringLiteral("index")); });
}

void HelpWindow::open(const QString& topic) {
    if (isRegistered_) {
        browser_->setSource(QUrl(QStringLiteral("qrc:/help/%1.html").arg(topic)));
    } else {
        browser_->setPlainText(QStringLiteral("The help file cannot be opened: ") + file_);
    }
    show();
    raise();
    activateWindow();
}

}  // namespace corvalence::gui
