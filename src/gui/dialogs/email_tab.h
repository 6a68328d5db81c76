#pragma once

#include <vector>

#include "gui/dialogs/path_edit.h"
#include "gui/dialogs/sheet_tab.h"

namespace corvalence::gui {

/// "Email.": mails about scheduled checks.
class EmailTab : public SheetTab {
  public:
    /// `sendsThroughServer`: mail goes through a server of the user's; elsewhere the desktop's mail program
    /// sends it, and the server's fields are not shown.
    EmailTab(const shell::EmailPage& page, bool sendsThroughServer, const OpenHelp& openHelp);

    shell::EmailPage page() const;

  private:
    void addMail();
    void addServer(bool isShown);
    void showUsable();

    const shell::EmailPage stored_;
    QCheckBox* enabled_ = nullptr;
    QRadioButton* onlyChanges_ = nullptr;
    QRadioButton* encrypted_ = nullptr;
    QLineEdit* recipient_ = nullptr;
    QSpinBox* timeout_ = nullptr;
    QLineEdit* server_ = nullptr;
    QCheckBox* tls_ = nullptr;
    QLineEdit* sender_ = nullptr;
    PathEdit* login_ = nullptr;
    PathEdit* authorities_ = nullptr;
    std::vector<QWidget*> fields_;  // all that the switch turns on
};

}  // namespace corvalence::gui
