#pragma once

#include <QMainWindow>
#include <string>

class QTextBrowser;

namespace corvalence::gui {

/// The pages of the help, out of the one file that holds them. Stays open beside the other windows, modal
/// ones as well.
class HelpWindow : public QMainWindow {
  public:
    /// `file`: where the help lies. One that is missing or no help is told in the window.
    explicit HelpWindow(const std::string& file, QWidget* parent = nullptr);
    ~HelpWindow() override;

    /// Shows a page by its topic, in front.
    void open(const QString& topic);

  private:
    void addButtons();

    QString file_;
    bool isRegistered_;
    QTextBrowser* browser_;
};

}  // namespace corvalence::gui
