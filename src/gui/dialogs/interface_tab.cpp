#include "gui/dialogs/interface_tab.h"

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QVBoxLayout>

#include "gui/support/bars.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr int kRootLines = 4;

}  // namespace

InterfaceTab::InterfaceTab(const shell::InterfacePage& page, const OpenHelp& openHelp)
    : SheetTab(QStringLiteral("The window, and walks over the machine"), QStringLiteral("configuration"),
               openHelp, QStringLiteral("configinterface")),
      stored_(page) {
    addLook();
    addWalks();
    showUsable();
}

void InterfaceTab::addLook() {
    QVBoxLayout& recent = addGroup(QStringLiteral("Recently opened databases"));
    keepsRecent_ = addBox(recent, "keepRecentBox",
                          QStringLiteral("&Store a list of recently opened databases."), stored_.keepsRecent);
    recentCount_ =
        addNumber(recent, "recentSpin", QStringLiteral("&Number of databases to list on the database menu."),
                  {}, settings::key::kRecentCount, stored_.recentCount);
    QVBoxLayout& look = addGroup(QStringLiteral("Window"));
    seconds_ =
        addNumber(look, "infoBarSpin", QStringLiteral("&Update the memory and disk space info bars every:"),
                  QStringLiteral("seconds"), settings::key::kInfoBarSeconds, stored_.infoBarSeconds);
    themed_ = addBox(look, "themedBox", QStringLiteral("&XP Style progress bars."), stored_.themedProgress);
    themed_->setEnabled(hasThemeStyle());
    folderIcon_ =
        addBox(look, "folderIconBox", QStringLiteral("Corvalence &folder icon."), stored_.folderIcon);
    connect(keepsRecent_, &QCheckBox::toggled, this, [this] { showUsable(); });
}

void InterfaceTab::addWalks() {
    QVBoxLayout& walks = addGroup(QStringLiteral("Walks over the machine"));
    completeWalk_ =
        addBox(walks, "completeWalkBox",
               QStringLiteral("Complete &Walk: pass over nothing, and compare whole lines to the end"),
               stored_.completeWalk);
    walkRoots_ = new QPlainTextEdit(this);
    walkRoots_->setObjectName(QStringLiteral("walkRootsEdit"));
    walkRoots_->setTabChangesFocus(true);
    walkRoots_->setLineWrapMode(QPlainTextEdit::NoWrap);
    walkRoots_->setFixedHeight(walkRoots_->fontMetrics().lineSpacing() * (kRootLines + 1));
    walkRoots_->setPlainText(shownLines(stored_.walkRoots));
    storedRoots_ = walkRoots_->toPlainText();
    auto* label = new QLabel(
        QStringLiteral("Walk Roo&ts: folders, one a line, that walks keep to (empty: every drive)"), this);
    label->setBuddy(walkRoots_);
    label->setWordWrap(true);
    walks.addWidget(label);
    walks.addWidget(walkRoots_);
}

void InterfaceTab::showUsable() {
    recentCount_->setEnabled(page().canSetRecentCount());
}

std::string InterfaceTab::walkRoots() const {
    // Unchanged they keep their bytes, also those that cannot be shown.
    if (walkRoots_->toPlainText() == storedRoots_) return stored_.walkRoots;
    return bytesOf(
        walkRoots_->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts).join(QLatin1Char('\n')));
}

shell::InterfacePage InterfaceTab::page() const {
    return {recentCount_->value(),    keepsRecent_->isChecked(),  seconds_->value(), themed_->isChecked(),
            folderIcon_->isChecked(), completeWalk_->isChecked(), walkRoots()};
}

}  // namespace corvalence::gui
