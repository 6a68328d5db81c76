#include "gui/view_commands.h"

#include "gui/support/text.h"
#include "gui/views/file_list_view.h"
#include "gui/views/report_view.h"
#include "gui/views/table_printer.h"

namespace corvalence::gui {

using shell::Command;

ViewCommands::ViewCommands(Workspace& workspace) : work_(workspace) {
    CommandActions& actions = work_.frame().actions();
    for (const shell::ModeRow& row : shell::modeRows())
        actions.handle(shell::commandOf(row.mode), [this, mode = row.mode] { work_.setMode(mode); });
    actions.handle(Command::Print, [this] { print(); });
    for (const Command look : {Command::GridLines, Command::InvertColours}) {
        actions.handle(look, [this] {
            if (ListTable* list = table()) work_.dress(*list);
        });
    }
    work_.frame().onPreviousPage = [this] { work_.perform([this] { work_.previousPage(); }); };
    work_.frame().onNextPage = [this] { work_.perform([this] { work_.nextPage(); }); };
}

ListTable* ViewCommands::table() const {
    if (work_.fileList() != nullptr) return work_.fileList();
    auto* report = dynamic_cast<ReportView*>(work_.frame().view());
    return report != nullptr ? &report->table() : nullptr;
}

void ViewCommands::print() {
    work_.state().view == shell::View::Report ? printReport() : printFiles();
}

/// All pages, whatever the list shows.
void ViewCommands::printFiles() {
    FileListModel files;
    files.open(work_.vault(), *work_.database());
    printTable({shown(work_.database()->path()), files.pages(),
                [&files](std::size_t page) -> QAbstractItemModel& {
                    files.goToPage(page + 1);
                    return files;
                }},
               &work_.frame());
}

void ViewCommands::printReport() {
    // A session of its own: the view is painted while the printing goes on, and must find its page.
    const auto session = work_.reports().again();
    ReportModel model(*session);
    printTable({shown(session->row().title), session->pages(),
                [&](std::size_t page) -> QAbstractItemModel& {
                    session->goToPage(page + 1);
                    model.refresh();
                    return model;
                }},
               &work_.frame());
}

}  // namespace corvalence::gui
