#include "gui/dialogs/audio_tab.h"

#include <QButtonGroup>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <array>

#include "gui/support/icons.h"

namespace corvalence::gui {

namespace {

using shell::WarningChoice;

struct WarningRow {
    WarningChoice choice;
    const char* radio;
    const char* button;  // none plays nothing
    const char* text;
    const char* spoken;
};

constexpr std::array<WarningRow, 5> kWarnings = {{
    {WarningChoice::Calm, "calmRadio", "calmButton", "Cal&m", "Play Calm"},
    {WarningChoice::Warning, "warningRadio", "warningButton", "&Warning", "Play Warning"},
    {WarningChoice::Alarm, "alarmRadio", "alarmButton", "&Alarm", "Play Alarm"},
    {WarningChoice::Silent, "silentRadio", nullptr, "Si&lent", nullptr},
    {WarningChoice::File, "fileRadio", "fileButton", "WA&V File", "Play WAV File"},
}};

}  // namespace

AudioTab::AudioTab(const shell::AudioPage& page, platform::Sound& sound, const OpenHelp& openHelp)
    : SheetTab(QStringLiteral("Sounds that warn"), QStringLiteral("warning"), openHelp,
               QStringLiteral("configaudio")),
      sound_(sound) {
    addCountdown(page);
    addWarnings(page);
}

void AudioTab::addPlay(QLayout& row, const char* name, const QString& what, std::function<void()> play) {
    auto* button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setIcon(icon(QStringLiteral("start")));
    button->setAccessibleName(what);
    button->setToolTip(what);
    button->setFocusPolicy(Qt::StrongFocus);
    row.addWidget(button);
    connect(button, &QToolButton::clicked, this, std::move(play));
}

void AudioTab::addCountdown(const shell::AudioPage& page) {
    QVBoxLayout& group = addGroup(QStringLiteral("Countdown"));
    auto* row = new QHBoxLayout;
    group.addLayout(row);
    auto* buttons = new QButtonGroup(this);
    buttons->addButton(addRadio(*row, "bleepRadio", QStringLiteral("&Bleep"), !page.isCountdownSilent));
    addPlay(*row, "bleepButton", QStringLiteral("Play Bleep"),
            [this] { shell::AudioPage::playBleep(sound_); });
    row->addStretch();
    silent_ = addRadio(group, "countdownSilentRadio", QStringLiteral("&Silent"), page.isCountdownSilent);
    buttons->addButton(silent_);
}

void AudioTab::addWarnings(const shell::AudioPage& page) {
    QVBoxLayout& group = addGroup(QStringLiteral("On Modification Detection"));
    auto* buttons = new QButtonGroup(this);
    for (const WarningRow& warning : kWarnings) {
        auto* row = new QHBoxLayout;
        group.addLayout(row);
        warnings_.push_back(
            addRadio(*row, warning.radio, QString::fromLatin1(warning.text), page.warning == warning.choice));
        buttons->addButton(warnings_.back());
        if (warning.button != nullptr) {
            addPlay(*row, warning.button, QString::fromLatin1(warning.spoken),
                    [this, choice = warning.choice] { this->page().play(sound_, choice); });
        }
        row->addStretch();
    }
    file_ = new PathEdit(this);
    file_->setPath(page.soundFile);
    QPushButton* browse = addBrowsed(group, file_, "soundFileEdit", QStringLiteral("&File:"),
                                     "soundFileBrowseButton", QStringLiteral("B&rowse"));
    connect(browse, &QPushButton::clicked, this, [this] { this->browse(); });
}

void AudioTab::browse() {
    const QString chosen =
        QFileDialog::getOpenFileName(this, QStringLiteral("Select WAV file."), file_->text(),
                                     QStringLiteral("WAV files (*.wav *.WAV);;All files (*)"));
    if (!chosen.isEmpty()) file_->setPath(chosenPath(chosen));
}

shell::AudioPage AudioTab::page() const {
    shell::AudioPage page;
    page.isCountdownSilent = silent_->isChecked();
    for (const WarningRow& warning : kWarnings) {
        if (warnings_[static_cast<std::size_t>(warning.choice)]->isChecked()) page.warning = warning.choice;
    }
    page.soundFile = file_->path();
    return page;
}

}  // namespace corvalence::gui
