#include "gui/frame.h"

#include <QCloseEvent>
#include <QDataStream>
#include <QIODevice>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include "gui/empty_view.h"
#include "gui/support/icons.h"
#include "gui/support/text.h"
#include "gui/views/info_bar.h"
#include "gui/views/list_table.h"
#include "gui/views/page_bar.h"

namespace corvalence::gui {

namespace {

using shell::Command;
using shell::Menu;
using shell::ToolBar;

constexpr int kLayoutVersion = 1;
constexpr int kSmallButton = 16;
constexpr int kLargeButton = 32;
constexpr QSize kFirstSize(1000, 700);

struct ToolBarRow {
    ToolBar bar;
    Command toggle;
    Menu menu;  // that its commands are in, or most of them
    const char* name;
};
constexpr ToolBarRow kToolBars[] = {
    {ToolBar::Main, Command::MainToolBar, Menu::Database, "mainToolBar"},
    {ToolBar::AddFiles, Command::AddToolBar, Menu::AddFiles, "addFilesToolBar"},
    {ToolBar::RemoveFiles, Command::RemoveToolBar, Menu::RemoveFiles, "removeFilesToolBar"}};

constexpr Command kInfoBars[] = {Command::CountdownBar,    Command::MemoryBar,
                                 Command::DiskSpaceBar,    Command::DatabaseContentsBar,
                                 Command::DatabaseSizeBar, Command::PageBar};

constexpr std::string_view kSelfCheckOk = "Database File Integrity Self Check...OK";
constexpr std::string_view kSelfCheckFailed = "Self check...Database File Changed!";

}  // namespace

Frame::Frame() : actions_(this), views_(new QStackedWidget), empty_(new EmptyView(actions_)) {
    setObjectName(QStringLiteral("frame"));
    setWindowIcon(icon(QStringLiteral("corvalence")));
    setWindowTitle(shown(shell::kPlainTitle));
    views_->addWidget(empty_);
    setCentralWidget(views_);
    addMenus();
    addToolBars();
    addInfoBars();
    addStatusPanes();
    bindToggles();
    resize(kFirstSize);
}

Frame::~Frame() = default;

void Frame::addMenus() {
    for (const shell::CommandRow& row : shell::commandRows()) {
        QMenu*& menu = menus_[row.menu];
        if (menu == nullptr) menu = menuBar()->addMenu(shown(shell::menuText(row.menu)));
        if (row.command == Command::Exit) {
            recentMenu_ =
                menu->addMenu(icon(QStringLiteral("recent")), QStringLiteral("Recently opened databases"));
            menu->addSeparator();
        }
        menu->addAction(actions_.action(row.command));
        if (row.endsGroup) menu->addSeparator();
    }
    actions_.action(Command::Exit)->setMenuRole(QAction::QuitRole);
    actions_.action(Command::About)->setMenuRole(QAction::AboutRole);
}

void Frame::addToolBars() {
    for (const ToolBarRow& row : kToolBars) {
        QToolBar* bar =
            addToolBar(shown(shell::commandRow(row.toggle).text).remove(QLatin1Char('&')).trimmed());
        bar->setObjectName(QLatin1String(row.name));
        // Its own menu of bars would toggle them past the commands.
        bar->setContextMenuPolicy(Qt::PreventContextMenu);
        const shell::CommandRow* last = nullptr;
        for (const shell::CommandRow& command : shell::commandRows()) {
            if (command.toolBar != row.bar) continue;
            if (last != nullptr && last->menu != command.menu) bar->addSeparator();
            bar->addAction(actions_.action(command.command));
            last = &command;
        }
        toolBars_[row.toggle] = bar;
        if (row.bar == ToolBar::Main) addToolBarBreak();
    }
    setContextMenuPolicy(Qt::NoContextMenu);
}

void Frame::addInfoBars() {
    infoRow_ = new QToolBar(QStringLiteral("Info Bars"));
    infoRow_->setObjectName(QStringLiteral("infoBars"));
    infoRow_->setMovable(false);
    infoRow_->setContextMenuPolicy(Qt::PreventContextMenu);
    addToolBar(Qt::BottomToolBarArea, infoRow_);
    for (const Command command : kInfoBars) {
        const QString name = shown(shell::commandRow(command).text).trimmed();
        if (command == Command::PageBar) {
            pageBar_ = new PageBar(name);
            pageBar_->onPrevious = [this] { onPreviousPage(); };
            pageBar_->onNext = [this] { onNextPage(); };
            infoActions_[command] = infoRow_->addWidget(pageBar_);
        } else {
            infoBars_[command] = new InfoBar(name);
            infoActions_[command] = infoRow_->addWidget(infoBars_[command]);
        }
    }
}

void Frame::addStatusPanes() {
    work_ = new QLabel;
    work_->setObjectName(QStringLiteral("workPane"));
    // A long text must not widen the window.
    work_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    database_ = new QLabel;
    database_->setObjectName(QStringLiteral("databasePane"));
    indicator_ = new QLabel;
    indicator_->setObjectName(QStringLiteral("integrityIndicator"));
    statusBar()->addWidget(work_, 1);
    statusBar()->addPermanentWidget(database_);
    statusBar()->addPermanentWidget(indicator_);
}

void Frame::bindToggles() {
    for (const ToolBarRow& row : kToolBars) {
        QAction* action = actions_.action(row.toggle);
        connect(action, &QAction::toggled, this, &Frame::showToolBars);
        action->setChecked(row.bar == ToolBar::Main);
    }
    showToolBars();
    for (const Command command : kInfoBars) {
        QAction* action = actions_.action(command);
        connect(action, &QAction::toggled, this, [this, command](bool isOn) {
            infoActions_[command]->setVisible(isOn);
            infoRow_->setVisible(std::any_of(std::begin(kInfoBars), std::end(kInfoBars),
                                             [this](Command bar) { return isBarShown(bar); }));
        });
        action->setChecked(true);
    }
    connect(actions_.action(Command::LargeButtons), &QAction::toggled, this, &Frame::useLargeButtons);
    actions_.action(Command::SmallButtons)->setChecked(true);
    useLargeButtons(false);
}

void Frame::useLargeButtons(bool isLarge) {
    const int size = isLarge ? kLargeButton : kSmallButton;
    for (const auto& [command, bar] : toolBars_)
        bar->setIconSize(QSize(size, size));
}

void Frame::update(const shell::FrameState& state) {
    actions_.update(state);
    for (const auto& [menu, widget] : menus_)
        widget->menuAction()->setVisible(shell::isShown(menu, state.mode));
    mode_ = state.mode;
    showToolBars();
}

/// The bars of menus that a mode does not have stay away with them.
void Frame::showToolBars() {
    for (const ToolBarRow& row : kToolBars)
        toolBars_[row.toggle]->setVisible(isBarShown(row.toggle) && shell::isShown(row.menu, mode_));
}

void Frame::showEmpty(shell::Mode mode, const std::string& database) {
    empty_->show(mode, database);
    views_->setCurrentWidget(empty_);
    while (views_->count() > 1) {
        QWidget* old = views_->widget(1);
        views_->removeWidget(old);
        old->deleteLater();
    }
}

void Frame::showView(QWidget* view) {
    QWidget* old = views_->count() > 1 ? views_->widget(1) : nullptr;
    views_->addWidget(view);
    views_->setCurrentWidget(view);
    view->setFocus();
    if (old == nullptr) return;
    views_->removeWidget(old);
    old->deleteLater();
}

QWidget* Frame::view() const {
    return views_->currentWidget();
}

/// Texts such as "Selected Files" need their menu's name to be understood.
void Frame::fillListMenu(QMenu& menu, ListTable& list) {
    menu.addAction(actions_.action(Command::CheckDatabase));
    menu.addSeparator();
    for (const Menu part : {Menu::AddFiles, Menu::RemoveFiles})
        menu.addMenu(menus_[part]);
    menu.addSeparator();
    list.addEditActions(menu);
    menu.addSeparator();
    menu.addAction(actions_.action(Command::DatabaseDetails));
}

void Frame::setStatus(int pane, const std::string& text) {
    if (pane == 0) {
        work_->setText(shown(text));
        if (text == kSelfCheckFailed) setIndicator("warning", text);
        return;
    }
    database_->setText(shown(text));
    // The text comes once a database has proved itself, or was put back.
    text.empty() ? indicator_->clear() : setIndicator("yes", kSelfCheckOk);
}

void Frame::setIndicator(const char* picture, std::string_view text) {
    const int size = fontMetrics().height();
    indicator_->setPixmap(icon(QLatin1String(picture)).pixmap(QSize(size, size), devicePixelRatioF()));
    indicator_->setToolTip(shown(text));
    indicator_->setAccessibleName(shown(text));
}

void Frame::setPage(const std::string& caption, bool hasPrevious, bool hasNext) {
    pageBar_->setPage(caption, hasPrevious, hasNext);
}

void Frame::setInfo(Command bar, const shell::InfoBarContent& content) {
    infoBars_.at(bar)->setContent(content);
}

bool Frame::isBarShown(Command bar) const {
    return actions_.action(bar)->isChecked();
}

QByteArray Frame::layout() const {
    QByteArray layout;
    QDataStream stream(&layout, QIODevice::WriteOnly);
    stream << kLayoutVersion << saveGeometry() << saveState(kLayoutVersion);
    for (const shell::CommandRow& row : shell::commandRows()) {
        if (row.form == shell::CommandForm::Toggle || row.form == shell::CommandForm::Size)
            stream << actions_.action(row.command)->isChecked();
    }
    return layout;
}

bool Frame::restoreLayout(const QByteArray& layout) {
    QDataStream stream(layout);
    int version = 0;
    QByteArray geometry;
    QByteArray state;
    stream >> version >> geometry >> state;
    if (stream.status() != QDataStream::Ok || version != kLayoutVersion) return false;
    if (!restoreGeometry(geometry) || !restoreState(state, kLayoutVersion)) return false;
    for (const shell::CommandRow& row : shell::commandRows()) {
        if (row.form != shell::CommandForm::Toggle && row.form != shell::CommandForm::Size) continue;
        bool isOn = false;
        stream >> isOn;
        if (stream.status() != QDataStream::Ok) break;
        if (row.form == shell::CommandForm::Toggle || isOn) actions_.action(row.command)->setChecked(isOn);
    }
    showToolBars();
    return true;
}

void Frame::closeEvent(QCloseEvent* event) {
    event->setAccepted(mayClose());
}

void Frame::paintEvent(QPaintEvent* event) {
    QMainWindow::paintEvent(event);
    if (isPainted_) return;
    isPainted_ = true;
    QTimer::singleShot(0, this, [this] { firstPaint(); });
}

}  // namespace corvalence::gui
