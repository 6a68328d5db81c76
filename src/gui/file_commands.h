#pragma once

#include "files/add_pipeline.h"
#include "files/remove_pipeline.h"
#include "gui/dialogs/criteria_commands.h"
#include "gui/workspace.h"

namespace corvalence::gui {

/// Bringing files into the open database, and taking them out.
class FileCommands {
  public:
    /// Takes over its commands of the window; the workspace is to outlive it.
    explicit FileCommands(Workspace& workspace);

    /// Adds files and all below folders, as they were dropped or pasted.
    void addDropped(const std::vector<std::string>& paths);

  private:
    void addSpecificFile();
    void addAllFiles();
    void paste();
    void useCriteria(const CriteriaCommand& command);
    files::AddReport addPaths(const std::vector<std::string>& paths);
    void tell(const files::AddReport& report);
    void tell(const files::RemoveReport& report);
    void removeSelected();
    void removeAll();
    files::RemovePipeline removal();

    Workspace& work_;
};

}  // namespace corvalence::gui
