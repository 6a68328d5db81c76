#pragma once

#include <QDialog>

#include "gui/support/help.h"
#include "platform/user_interface.h"
#include "shell/folder_guard.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace corvalence::gui {

class GuardModel;
class ListTable;

/// "Corvalence folder permissions.": who may do what with the folder; "Strengthen" takes partial access away,
/// OK accepts the state that is shown.
class FolderPermissionsWindow : public QDialog {
  public:
    /// `state` is what guard.read() gave.
    FolderPermissionsWindow(shell::FolderGuard& guard, shell::FolderState state, platform::UserInterface& ui,
                            const OpenHelp& openHelp, QWidget* parent = nullptr);

    /// Stays open where the state cannot be stored; told.
    void accept() override;

  private:
    void addTexts(QVBoxLayout& layout);
    void addList(QVBoxLayout& layout);
    void strengthen();
    void showState();

    shell::FolderGuard& guard_;
    shell::FolderState state_;
    platform::UserInterface& ui_;
    QLabel* advice_ = nullptr;
    GuardModel* model_ = nullptr;
    ListTable* list_ = nullptr;
};

/// As wide as the list's columns, where the screen has the room.
void widenToColumns(QDialog& dialog, const ListTable& list);

/// A list of such entries with its name.
ListTable* makeGuardList(GuardModel& model, const char* name, const QString& spoken, QWidget& parent);

}  // namespace corvalence::gui
