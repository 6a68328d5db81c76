#include "gui/database_commands.h"

#include <QMenu>

#include "components/complete_system.h"
#include "components/kinds.h"
#include "core/database_lists.h"
#include "files/database_details.h"
#include "gui/dialogs/complete_system_window.h"
#include "gui/dialogs/create_database_window.h"
#include "gui/dialogs/database_details_window.h"
#include "gui/dialogs/open_database_window.h"
#include "gui/support/text.h"
#include "store/recent_list.h"

namespace corvalence::gui {

namespace {

using shell::Command;

}  // namespace

DatabaseCommands::DatabaseCommands(Workspace& workspace) : work_(workspace) {
    CommandActions& actions = work_.frame().actions();
    actions.handle(Command::CreateDatabase, [this] { create(); });
    actions.handle(Command::OpenDatabase, [this] { open(); });
    actions.handle(Command::CloseDatabase, [this] { work_.close(); });
    actions.handle(Command::DatabaseDetails, [this] { details(); });
    actions.handle(Command::DeleteDatabase, [this] { remove(); });
    QObject::connect(&work_.frame().recentMenu(), &QMenu::aboutToShow, [this] { fillRecent(); });
}

void DatabaseCommands::create() {
    made_.reset();
    CreateDatabaseWindow window(
        work_.vault(), work_.state().mode,
        [this](const store::CreationRequest& request) { return make(request); }, work_.openHelp(),
        &work_.frame());
    window.exec();
    if (!made_) return;
    const std::string path = made_->path();
    work_.frame().setStatus(1, {});  // what it says is of another database
    work_.showDatabase(*std::move(made_));
    made_.reset();
    noteRecent(path);
}

bool DatabaseCommands::make(const store::CreationRequest& request) {
    switch (work_.state().mode) {
        case shell::Mode::FileContents:
            made_ = store::DatabaseCreation(work_.vault()).create(request);
            return made_.has_value();
        case shell::Mode::CompleteSystem:
            return makeSystem(request);
        default:
            return makeComponent(request);
    }
}

bool DatabaseCommands::makeComponent(const store::CreationRequest& request) {
    const auto& kind = *components::findComponentKind(request.kind);
    const auto creation = kind.makeCreation(work_.vault(), work_.machine());
    bool wasCancelled = false;
    made_ = components::createDatabase(work_.vault(), kind, request, *creation, wasCancelled);
    if (made_) work_.tellRemarks("Not everything could be recorded:", creation->remarks());
    return made_.has_value();
}

bool DatabaseCommands::makeSystem(const store::CreationRequest& request) {
    std::vector<components::Remark> remarks;
    CompleteSystemWindow window(
        work_.platform().ui,
        [&](const components::SystemCreationOptions& options) {
            auto created = components::createCompleteSystem(work_.vault(), work_.machine(), request, options);
            for (components::ComponentCreated& component : created.components)
                std::move(component.remarks.begin(), component.remarks.end(), std::back_inserter(remarks));
            made_ = std::move(created.database);
            return made_.has_value();
        },
        work_.openHelp(), &work_.frame());
    window.exec();
    if (made_) work_.tellRemarks("Not everything could be recorded:", remarks);
    return made_.has_value();
}

void DatabaseCommands::open() {
    core::DatabaseLists lists(work_.vault());
    OpenDatabaseWindow window(work_.vault(), work_.state().mode, lists, work_.openHelp(), &work_.frame());
    const bool isChosen = window.exec() == QDialog::Accepted;
    // It could be deleted there.
    const bool isGone =
        work_.database() && !store::DatabaseIndex(work_.vault()).findExact(work_.database()->path());
    if (isGone) work_.close();
    if (isChosen && openPath(window.path()) && work_.state().mode != shell::Mode::FileContents) checkOpened();
}

bool DatabaseCommands::openPath(const std::string& path) {
    auto database = work_.openProved(path);
    if (!database) {
        // The open one, if there is one, has not become worse.
        work_.frame().setStatus(1, work_.database() ? "Database File Integrity " : "");
        return false;
    }
    const std::string opened = database->path();
    work_.showDatabase(*std::move(database));
    noteRecent(opened);
    return true;
}

void DatabaseCommands::noteRecent(const std::string& path) {
    store::RecentList(work_.configuration(), work_.vault().session)
        .opened(path, store::DatabaseIndex(work_.vault()));
}

void DatabaseCommands::details() {
    DatabaseDetailsWindow(files::readDetails(work_.vault(), *work_.database()), work_.platform().clock,
                          work_.openHelp(), &work_.frame())
        .exec();
}

void DatabaseCommands::remove() {
    core::DatabaseLists lists(work_.vault());
    if (store::deleteDatabase(work_.vault(), *work_.database(), lists) != store::DeletionResult::Declined)
        work_.close();
}

void DatabaseCommands::fillRecent() {
    QMenu& menu = work_.frame().recentMenu();
    menu.clear();
    if (work_.isBusy() || work_.state().view == shell::View::Report) return;
    try {
        const auto records = store::DatabaseIndex(work_.vault()).records();
        const store::RecentList recent(work_.configuration(), work_.vault().session);
        for (const std::string& path : recent.paths(records)) {
            // A path may hold what stands for a key in a menu.
            QAction* action = menu.addAction(shown(path).replace(QLatin1Char('&'), QLatin1String("&&")));
            QObject::connect(action, &QAction::triggered, &menu,
                             [this, path] { work_.perform([&] { openPath(path); }); });
        }
    } catch (const base::FileFailure&) {
        // The list is a convenience; whoever opens a database is told.
    }
    if (menu.isEmpty()) menu.addAction(QStringLiteral("None"))->setEnabled(false);
}

}  // namespace corvalence::gui
