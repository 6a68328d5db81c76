#pragma once

#include "gui/dialogs/sheet_tab.h"

class QPlainTextEdit;

namespace corvalence::gui {

/// "Interface.": the window's habits, and how far walks over the machine go.
class InterfaceTab : public SheetTab {
  public:
    InterfaceTab(const shell::InterfacePage& page, const OpenHelp& openHelp);

    shell::InterfacePage page() const;

  private:
    void addLook();
    void addWalks();
    void showUsable();
    std::string walkRoots() const;

    const shell::InterfacePage stored_;
    QCheckBox* keepsRecent_ = nullptr;
    QSpinBox* recentCount_ = nullptr;
    QSpinBox* seconds_ = nullptr;
    QCheckBox* themed_ = nullptr;
    QCheckBox* folderIcon_ = nullptr;
    QCheckBox* completeWalk_ = nullptr;
    QPlainTextEdit* walkRoots_ = nullptr;
    QString storedRoots_;
};

}  // namespace corvalence::gui
