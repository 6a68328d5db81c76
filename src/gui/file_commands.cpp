#include "gui/file_commands.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMimeData>

#include "files/left_out_text.h"
#include "gui/dialogs/criteria_window.h"
#include "gui/support/text.h"
#include "gui/views/dropped_files.h"
#include "gui/views/file_list_view.h"

namespace corvalence::gui {

namespace {

using shell::Command;

constexpr std::size_t kDetailsShown = 10;

struct CriteriaRow {
    Command command;
    CriteriaKind kind;
    bool adds;
};

constexpr CriteriaRow kCriteria[] = {
    {Command::AddByLocation, CriteriaKind::Location, true},
    {Command::AddBySize, CriteriaKind::Size, true},
    {Command::AddByTime, CriteriaKind::Time, true},
    {Command::AddByType, CriteriaKind::Type, true},
    {Command::AddByAttributes, CriteriaKind::Attributes, true},
    {Command::AddByContents, CriteriaKind::Contents, true},
    {Command::AddByAbilities, CriteriaKind::Abilities, true},
    {Command::AddByCombination, CriteriaKind::Combination, true},
    {Command::RemoveByLocation, CriteriaKind::Location, false},
    {Command::RemoveBySize, CriteriaKind::Size, false},
    {Command::RemoveByTime, CriteriaKind::Time, false},
    {Command::RemoveByType, CriteriaKind::Type, false},
    {Command::RemoveByAttributes, CriteriaKind::Attributes, false},
    {Command::RemoveByContents, CriteriaKind::Contents, false},
    {Command::RemoveByAbilities, CriteriaKind::Abilities, false},
    {Command::RemoveByCombination, CriteriaKind::Combination, false},
};

}  // namespace

FileCommands::FileCommands(Workspace& workspace) : work_(workspace) {
    CommandActions& actions = work_.frame().actions();
    actions.handle(Command::AddSpecificFile, [this] { addSpecificFile(); });
    actions.handle(Command::AddAllFiles, [this] { addAllFiles(); });
    actions.handle(Command::PasteFiles, [this] { paste(); });
    actions.handle(Command::RemoveSelected, [this] { removeSelected(); });
    actions.handle(Command::RemoveAllFiles, [this] { removeAll(); });
    for (const CriteriaRow& row : kCriteria) {
        actions.handle(row.command,
                       [this, &command = criteriaCommand(row.kind, row.adds)] { useCriteria(command); });
    }
    work_.onDrop = [this](const std::vector<std::string>& paths) { addDropped(paths); };
}

void FileCommands::addSpecificFile() {
    const QString path = QFileDialog::getOpenFileName(&work_.frame(), QStringLiteral("Add file to database."),
                                                      {}, QStringLiteral("All Files (*)"));
    if (path.isEmpty()) return;
    addPaths({chosenPath(path)});
    work_.reloadFiles();  // and no report: what there is to say of one file was said
}

files::AddReport FileCommands::addPaths(const std::vector<std::string>& paths) {
    files::AddOptions options;
    options.notifyListed = true;
    return files::AddPipeline(work_.vault(), *work_.database()).addFiles(paths, options);
}

void FileCommands::addDropped(const std::vector<std::string>& paths) {
    std::vector<std::string> single;
    for (const std::string& path : paths) {
        const auto status = work_.platform().files.status(path, platform::Follow::Yes);
        if (!status || status->kind != platform::FileKind::Folder) {
            single.push_back(path);
            continue;
        }
        const files::AddReport report =
            files::AddPipeline(work_.vault(), *work_.database()).addLocation(path, {}, {});
        work_.reloadFiles();
        tell(report);
        if (report.cancelled) return;
    }
    if (single.empty()) return;
    const files::AddReport report = addPaths(single);
    work_.reloadFiles();
    tell(report);
}

void FileCommands::paste() {
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (data != nullptr) addDropped(pathsOf(*data));
}

void FileCommands::addAllFiles() {
    AddAllWindow window(work_.vault(), *work_.database(), work_.openHelp(), &work_.frame());
    window.exec();
    work_.reloadFiles();  // what failed in the middle may have added some
    if (window.added()) tell(*window.added());
}

void FileCommands::useCriteria(const CriteriaCommand& command) {
    CriteriaWindow window(work_.vault(), *work_.database(), command, work_.openHelp(), &work_.frame());
    window.exec();
    work_.reloadFiles();  // what failed in the middle may have changed them
    if (window.added()) tell(*window.added());
    if (window.removed()) tell(*window.removed());
}

void FileCommands::tell(const files::AddReport& report) {
    const std::string leftOut =
        files::leftOutText(report.failed, report.ownFiles, report.passedOver, kDetailsShown);
    std::string text = report.text;
    if (!leftOut.empty()) text += (text.empty() ? "" : "\n\n") + leftOut;
    const bool isComplete = report.failed == 0 && report.passedOver.unreadable.empty();
    if (!text.empty() && !report.refused)
        work_.platform().ui.message(isComplete ? platform::Icon::Information : platform::Icon::Warning, text);
}

void FileCommands::tell(const files::RemoveReport& report) {
    if (!report.text.empty()) work_.platform().ui.message(platform::Icon::Information, report.text);
}

files::RemovePipeline FileCommands::removal() {
    return files::RemovePipeline(work_.vault(), *work_.database(), [this](std::uint64_t count) {
        return work_.platform().ui.ask(platform::Icon::Warning,
                                       files::removeQuestion(count, work_.database()->path()));
    });
}

void FileCommands::removeSelected() {
    const auto paths = work_.fileList()->selectedPaths();
    if (paths.empty()) {
        work_.platform().ui.message(platform::Icon::Information, "Select files from the list first.");
        return;
    }
    const files::RemoveReport report = removal().removeFiles(paths);
    work_.reloadFiles();
    tell(report);
}

void FileCommands::removeAll() {
    const files::RemoveReport report = removal().removeAll();
    work_.reloadFiles();
    tell(report);
}

}  // namespace corvalence::gui
