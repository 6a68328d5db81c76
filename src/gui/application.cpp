#include "gui/application.h"

#include <QApplication>
#include <QMessageBox>
#include <QSessionManager>

#include "core/clean_up.h"
#include "core/folder_icons.h"
#include "core/installation.h"
#include "files/file_type_texts.h"
#include "gui/check_commands.h"
#include "gui/database_commands.h"
#include "gui/dialogs/password_window.h"
#include "gui/file_commands.h"
#include "gui/help_window.h"
#include "gui/schedule_commands.h"
#include "gui/support/bars.h"
#include "gui/support/icons.h"
#include "gui/support/text.h"
#include "gui/tool_commands.h"
#include "gui/view_commands.h"

namespace corvalence::gui {

namespace {

// Of the window, beside the configuration: what it looked like when it was closed.
constexpr const char* kLayoutKey = "Software\\Corvalence\\Window Layout";

constexpr std::chrono::milliseconds kSignalPoll{200};
constexpr std::chrono::milliseconds kIconPeriod{170};
constexpr std::chrono::seconds kCheckDelay{1};

}  // namespace

Application::Application(const Host& host, bool startsInBackground)
    : host_(host), startsInBackground_(startsInBackground), platform_{host_.files,   host_.access,
                                                                      host_.volumes, host_.status,
                                                                      host_.process, host_.types,
                                                                      host_.clock,   host_.settings,
                                                                      host_.sound,   ui_,
                                                                      host_.paths} {
    QApplication::setApplicationName(QStringLiteral("Corvalence"));
    QApplication::setApplicationDisplayName(QString());
    QApplication::setWindowIcon(icon(QStringLiteral("corvalence")));
    QApplication::setQuitOnLastWindowClosed(false);
    watchSignals();
}

Application::~Application() {
    stop();
}

bool Application::start() {
    try {
        if (!makeInstallation() || !provePassword()) return false;
    } catch (const base::FileFailure& failure) {
        ui_.message(platform::Icon::Stop, failure.what());
        return false;
    }
    makeFrame();
    makeCommands();
    core::applyFolderIcons(platform_, run_->configuration(), host_.folderIcon);
    if (!isStopped_) showFrame();
    return !isStopped_;  // the session may end before the window is there
}

/// A new user's first start makes what is needed. It is asked for, so that a folder that has gone missing
/// never becomes a new beginning unnoticed.
bool Application::makeInstallation() {
    if (core::isInstalled(platform_)) return true;
    if (core::Run::proveAdministrator(platform_) != core::StartResult::Ready) return false;
    const std::string question =
        "There is no installation of Corvalence for this user yet.\n\nMake one in " + host_.dataRoot + " ?";
    if (!ui_.ask(platform::Icon::Information, question, false)) return false;
    platform_.files.createFolder(host_.dataRoot);
    std::unique_ptr<platform::InstanceLock> lock;
    if (core::Run::lock(platform_, host_.dataRoot, std::chrono::milliseconds(0), lock) !=
        core::StartResult::Ready)
        return false;
    if (core::install(platform_, host_.dataRoot) != core::InstallResult::DataInTheWay) return true;
    ui_.message(platform::Icon::Stop,
                "The settings are missing, but " + host_.dataRoot +
                    " holds databases. Bring the settings back, or move the folder away.");
    return false;
}

bool Application::provePassword() {
    PasswordWindow window(platform_, helpOpener());
    PasswordPrompt prompt(window);
    return core::Run::start(platform_, prompt, std::chrono::milliseconds(0), run_) ==
           core::StartResult::Ready;
}

void Application::makeFrame() {
    frame_ = std::make_unique<Frame>();
    frame_->mayClose = [this] { return mayClose(); };
    frame_->firstPaint = [this] { firstPaint(); };
    ui_.showStatus = [this](int pane, const std::string& text) { frame_->setStatus(pane, text); };
    workspace_ = std::make_unique<Workspace>(platform_, host_.machine, *run_, *frame_, helpOpener());
    ui_.isUnattended = [this] { return schedule_ && schedule_->isUnattended(); };
    ui_.isEnding = [this] { return workspace_->isEnding(); };
    ui_.typeText = [types = files::FileTypeTexts(platform_.paths, platform_.types)](
                       std::string_view path) mutable { return types.of(path); };
    workspace_->closeProgram = [this] {
        stop();
        QApplication::quit();
    };
}

void Application::makeCommands() {
    if (!tray) tray = std::make_unique<QtTray>();
    databases_ = std::make_unique<DatabaseCommands>(*workspace_);
    files_ = std::make_unique<FileCommands>(*workspace_);
    checks_ = std::make_unique<CheckCommands>(*workspace_);
    tools_ = std::make_unique<ToolCommands>(*workspace_, host_.program, host_.autoStart);
    databases_->checkOpened = [this] { checks_->checkProved(); };
    checks_->openDatabase = [this] { databases_->open(); };
    tools_->onConfigured = [this] { takeSettings(); };
    tools_->reopen = [this](const std::string& path) { databases_->openPath(path); };
    views_ = std::make_unique<ViewCommands>(*workspace_);
    schedule_ = std::make_unique<ScheduleCommands>(
        *workspace_,
        ScheduleCommands::Parts{host_.mail, *tray, hasTray,
                                [this](const std::string& path) { checks_->checkWithPrompts(path); },
                                [this] { tools_->showSummary(); }});
    tools_->stopChecking = [this] { schedule_->stopWithoutSummary(); };
    if (auto* icons = dynamic_cast<QtTray*>(tray.get())) {
        icons->callbacks = {[this] { schedule_->trayOpen(); }, [this] { return schedule_->trayMenu(); },
                            [this] { schedule_->openTrayMenu(); },
                            [this](schedule::TrayCommand command) { schedule_->trayCommand(command); }};
    }
    // Whatever goes on: it is cancelled.
    QObject::connect(frame_->actions().action(shell::Command::Exit), &QAction::triggered, frame_.get(),
                     [this] { workspace_->requestEnd(); });
}

void Application::showFrame() {
    workspace_->setMode(shell::Mode::FileContents);
    frame_->setWindowTitle(shown(shell::kPlainTitle));  // until a mode is chosen
    frame_->setStatus(0, std::string(shell::kLockedText));
    restoreLayout();
    takeSettings();
    QObject::connect(&infoBars_, &QTimer::timeout, [this] { refreshInfoBars(); });
    QObject::connect(&animation_, &QTimer::timeout, [this] { animate(); });
    animation_.start(kIconPeriod);
    if (startsInBackground_) {
        schedule_->startBackground();
        return;
    }
    // Lowered before it is shown: behind the others it would have the keys without being seen.
    frame_->winId();
    frame_->lower();
    frame_->showMaximized();
}

int Application::run() {
    return QApplication::exec();
}

void Application::stop() {
    if (isStopped_ || !frame_) return;
    isStopped_ = true;
    infoBars_.stop();
    animation_.stop();
    signals_.stop();
    saveLayout();
    frame_->hide();
    schedule_->end();
    try {
        core::cleanUp(run_->vault());
    } catch (const std::exception&) {
        // Nobody is there any more to be told; the next start clears up.
    }
}

void Application::restoreLayout() {
    const auto text = platform_.settings.read(kLayoutKey);
    if (text) frame_->restoreLayout(QByteArray::fromBase64(QByteArray::fromStdString(*text)));
}

/// A convenience: a store that takes no more keeps nobody from closing the program.
void Application::saveLayout() {
    platform_.settings.write(kLayoutKey, frame_->layout().toBase64().toStdString());
}

/// Kept, since what reads them goes on behind every box: "Registry error." would come without end.
void Application::takeSettings() {
    const settings::Configuration& configuration = run_->configuration();
    const bool isAnimated = configuration.isOn(settings::key::kTrayAnimation);
    // A choice at the tray holds until the setting changes.
    if (isAnimated != isAnimated_) schedule_->setAnimated(isAnimated);
    isAnimated_ = isAnimated;
    infoBars_.start(std::chrono::seconds(configuration.number(settings::key::kInfoBarSeconds)));
    setThemedBars(configuration.isOn(settings::key::kThemedProgress));
    dataFolder_ = configuration.stored(settings::key::kInstallDirectory).value_or(std::string());
    refreshInfoBars();
}

void Application::refreshInfoBars() {
    frame_->setInfo(shell::Command::MemoryBar, shell::memoryBar(platform_.status.memory()));
    frame_->setInfo(shell::Command::DiskSpaceBar, shell::diskSpaceBar(platform_.status.disk(dataFolder_)));
}

void Application::animate() {
    const bool isMoving = workspace_->state().isScheduleRunning && isAnimated_;
    if (!isMoving && animationFrame_ == 0) return;
    animationFrame_ = isMoving ? (animationFrame_ + 1) % static_cast<int>(windowIcons_.size()) : 0;
    QIcon& picture = windowIcons_[static_cast<std::size_t>(animationFrame_)];
    if (picture.isNull()) picture = icon(QStringLiteral("window-%1").arg(animationFrame_));
    frame_->setWindowIcon(picture);
}

void Application::watchSignals() {
    QObject::connect(&signals_, &QTimer::timeout, [this] {
        const bool isEnding = workspace_ && workspace_->isEnding();
        if (!host_.process.cancelRequested() && !isEnding) return;
        if (workspace_) {
            workspace_->requestEnd();  // again and again: one dialog may lie behind the other
        } else if (QWidget* front = QApplication::activeModalWidget()) {
            front->close();
        }
    });
    signals_.start(kSignalPoll);
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, &signals_, [this](QSessionManager&) {
        if (workspace_) workspace_->requestEnd();
    });
}

bool Application::mayClose() {
    workspace_->requestEnd();
    return isStopped_;
}

/// Work that goes on when the window comes up first is not to swallow the check.
void Application::firstPaint() {
    if (isStopped_) return;
    if (workspace_->isBusy()) {
        QTimer::singleShot(kCheckDelay, frame_.get(), [this] { frame_->firstPaint(); });
        return;
    }
    workspace_->perform([this] {
        tools_->checkAtStart();
        schedule_->tellWhereItRuns();
    });
}

OpenHelp Application::helpOpener() {
    return [this](const QString& topic) { openHelp(topic); };
}

/// A modal window blocks every other but those that belong to it.
void Application::openHelp(const QString& topic) {
    QWidget* owner = QApplication::activeModalWidget();
    auto* window = dynamic_cast<HelpWindow*>(help_.data());
    if (window == nullptr || window->parentWidget() != owner) {
        if (window != nullptr) window->close();
        window = new HelpWindow(host_.program.files.help, owner);
        window->setAttribute(Qt::WA_DeleteOnClose);
        help_ = window;
    }
    window->open(topic);
}

}  // namespace corvalence::gui
