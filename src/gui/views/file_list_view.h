#pragma once

#include "gui/views/file_list_model.h"
#include "gui/views/list_table.h"

namespace corvalence::gui {

/// The files of the open database.
class FileListView : public ListTable {
  public:
    explicit FileListView(QWidget* parent = nullptr);

    FileListModel& files() noexcept { return files_; }

    /// The paths of the chosen rows, byte for byte, for commands on them.
    std::vector<std::string> selectedPaths() const;

  private:
    void showState();

    FileListModel files_;
    bool isFitted_ = false;
};

}  // namespace corvalence::gui
