#pragma once

#include <QDialog>

#include "gui/support/help.h"
#include "gui/views/list_table.h"
#include "gui/views/log_model.h"
#include "schedule/log_files.h"
#include "schedule/log_session.h"

class QRadioButton;
class QVBoxLayout;

namespace corvalence::gui {

/// The viewer of logs, and the summary of a session that has ended, with what is to become of the log.
class LogWindow : public QDialog {
  public:
    /// What is viewed.
    enum class Subject {
        Session,   // at its end: it goes to the master log, or takes its place
        Master,    // stays, or is emptied
        Imported,  // a file of the user's: it stays
    };

    /// `path`: of an imported log. `inverted`: the lists are in the inverted colour scheme.
    LogWindow(store::Vault& vault, Subject subject, const OpenHelp& openHelp, bool inverted,
              QWidget* parent = nullptr, const std::string& path = {});
    ~LogWindow() override;

    /// Reads the log, asking what there is to ask, and shows the window. A log that cannot be read is told,
    /// and shown empty.
    int exec() override;
    /// Carries out what is chosen. A failure is told; the window stays.
    void accept() override;
    /// Leaves the master log as it is; a session is appended to it all the same, since no session may be
    /// lost or get into the next one.
    void reject() override;

    ListTable& list() noexcept { return *list_; }

  private:
    void addList(QVBoxLayout& layout, bool inverted);
    void addChoice(QVBoxLayout& layout);
    void addButtons(QVBoxLayout& layout, const OpenHelp& openHelp);
    void load();
    void widen();
    void exportLog();
    void print();
    /// False where it failed; the user is told.
    bool carryOut(bool isSecond);
    std::optional<crypto::SecretText> askPassword();

    store::Vault& vault_;
    Subject subject_;
    OpenHelp openHelp_;
    schedule::LogFiles logs_;
    LogModel model_;
    ListTable* list_ = nullptr;
    int widest_ = 0;  // of the lines that have been on screen
    QRadioButton* first_ = nullptr;
    QRadioButton* second_ = nullptr;
    std::unique_ptr<schedule::LogSession> session_;
};

}  // namespace corvalence::gui
