#pragma once

#include "gui/workspace.h"

namespace corvalence::gui {

/// The modes, what lists look like, pages and printing.
class ViewCommands {
  public:
    /// Takes over its commands of the window; the workspace is to outlive it.
    explicit ViewCommands(Workspace& workspace);

  private:
    class ListTable* table() const;
    void print();
    void printFiles();
    void printReport();

    Workspace& work_;
};

}  // namespace corvalence::gui
