#pragma once

#include <QDialog>

#include "files/file_analysis.h"
#include "gui/support/help.h"

class QDialogButtonBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace corvalence::gui {

class AnalysisLists;

/// "File Analysis: " and the file's name: a changed file beside its backup, row by row. Opens at once
/// whatever the file's size, then goes to the first difference. Cancel ends a search that is going on, and
/// closes the window where there is none.
class FileAnalysisWindow : public QDialog {
  public:
    FileAnalysisWindow(store::Vault& vault, const store::OpenDatabaseContext& database,
                       const files::FileRecord& record, const OpenHelp& openHelp, QWidget* parent);
    ~FileAnalysisWindow() override;

    void done(int result) override;
    void reject() override;

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    class Search;

    void addLists(QVBoxLayout& layout);
    void addSearchRow(QVBoxLayout& layout);
    void addButtons(QVBoxLayout& layout, const OpenHelp& openHelp);
    QPushButton* addViewButton(files::AnalysisView view, const char* text, const char* name);
    void tellTrouble();

    bool isComparable() const;
    void showView(files::AnalysisView view);
    /// To the next differing row from this one on.
    void goForward(std::uint64_t from);
    void goBack(std::uint64_t before);
    void goNext();
    void goPrevious();
    /// Looks for a row: `find` says how the walk ended and which row it found.
    void search(const std::function<files::FileAnalysis::Walk(files::ByteProgress&, std::uint64_t&)>& find);
    void enableButtons();
    void setStatus(const std::string& text);

    store::Vault& vault_;
    std::string path_;
    files::FileAnalysis analysis_;
    AnalysisLists* lists_ = nullptr;
    QLabel* status_ = nullptr;
    QProgressBar* bar_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    QPushButton* text_ = nullptr;
    QPushButton* hex_ = nullptr;
    QPushButton* next_ = nullptr;
    QPushButton* previous_ = nullptr;
    bool isSearching_ = false;
    bool isStopped_ = false;
    std::optional<int> resultAfterSearch_;  // the window closes with it
    bool wasShown_ = false;
};

}  // namespace corvalence::gui
