#pragma once

#include <QDialog>
#include <optional>
#include <string>

#include "gui/support/help.h"
#include "shell/configuration_sheet.h"

class QTabWidget;

namespace corvalence::gui {

class AudioTab;
class BackgroundTab;
class BackupTab;
class EmailTab;
class InterfaceTab;
class PageSizeTab;

/// What the sheet needs of its surroundings. All outlive it.
struct SheetMeans {
    platform::Sound& sound;
    const base::PathRules& paths;
    OpenHelp openHelp;
    /// Mail goes through a server of the user's, not through the desktop's mail program.
    bool sendsThroughServer = true;
};

/// "Configuration.": six pages of fields. It changes nothing by itself.
class ConfigurationWindow : public QDialog {
  public:
    ConfigurationWindow(const shell::SheetPages& pages, const SheetMeans& means, QWidget* parent = nullptr);

    shell::SheetPages pages() const;
    /// The folder for backup databases that the settings hold, where the pages have another one already.
    void setStoredFolder(const std::string& folder);
    /// Number of the page in front.
    int current() const;
    void setCurrent(int page);

  private:
    void addTabs(const shell::SheetPages& pages, const SheetMeans& means);

    QTabWidget* tabs_;
    BackupTab* backup_ = nullptr;
    AudioTab* audio_ = nullptr;
    BackgroundTab* background_ = nullptr;
    PageSizeTab* pageSize_ = nullptr;
    InterfaceTab* look_ = nullptr;
    EmailTab* email_ = nullptr;
};

/// Shows the sheet in such a window, again with the page in front that was there before.
class ConfigurationPrompt : public shell::SheetDialog {
  public:
    explicit ConfigurationPrompt(SheetMeans means, QWidget* parent = nullptr)
        : means_(std::move(means)), parent_(parent) {}

    bool show(shell::SheetPages& pages) override;

  private:
    SheetMeans means_;
    QWidget* parent_;
    std::optional<std::string> storedFolder_;
    int current_ = 0;
};

}  // namespace corvalence::gui
