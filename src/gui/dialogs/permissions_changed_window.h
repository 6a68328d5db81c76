#pragma once

#include <QDialog>

#include "gui/support/help.h"
#include "shell/folder_guard.h"

class QVBoxLayout;

namespace corvalence::gui {

class ListTable;

/// Tells that the folder's access list is not as it was accepted: both states, one below the other.
class PermissionsChangedWindow : public QDialog {
  public:
    PermissionsChangedWindow(const shell::GuardCheck& check, const OpenHelp& openHelp,
                             QWidget* parent = nullptr);

  private:
    void addAlarm(QVBoxLayout& layout, bool isDamaged);
    ListTable* addRows(QVBoxLayout& layout, const char* name, std::string_view label,
                       const std::vector<shell::GuardRow>& rows);
};

}  // namespace corvalence::gui
