#include "gui/support/dialog_buttons.h"

#include <QEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <algorithm>

namespace corvalence::gui {

namespace {

constexpr int kBesideTitle = 9;  // lines' heights that the icon and the buttons of a title bar take

/// Widens a dialog before it is placed; what it has room for later is the user's choice.
class TitleRoom : public QObject {
  public:
    explicit TitleRoom(QDialog& dialog) : QObject(&dialog), dialog_(dialog) {
        dialog.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show && !event->spontaneous()) {
            QFont font = dialog_.font();
            font.setBold(true);
            const QFontMetrics metrics(font);
            const int room =
                metrics.horizontalAdvance(dialog_.windowTitle()) + kBesideTitle * metrics.height();
            const int widest = dialog_.screen()->availableSize().width() * 9 / 10;
            if (dialog_.width() < room) dialog_.resize(std::min(room, widest), dialog_.height());
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QDialog& dialog_;
};

}  // namespace

void giveTitleRoom(QDialog& dialog) {
    new TitleRoom(dialog);
}

void pressByHelpKey(QAbstractButton& help, QWidget& window) {
    auto* keys = new QShortcut(QKeySequence::HelpContents, &window);
    QObject::connect(keys, &QShortcut::activated, &help, [&help] { help.click(); });
}

QDialogButtonBox* makeButtons(QDialog& dialog, QDialogButtonBox::StandardButtons buttons,
                              const OpenHelp& openHelp, const QString& topic) {
    auto* box = new QDialogButtonBox(buttons, &dialog);
    QObject::connect(box, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(box, &QDialogButtonBox::helpRequested, &dialog, [openHelp, topic] {
        if (openHelp) openHelp(topic);
    });
    const auto name = [box](QDialogButtonBox::StandardButton which, const char* objectName) {
        if (QPushButton* button = box->button(which)) button->setObjectName(QLatin1String(objectName));
    };
    name(QDialogButtonBox::Ok, "okButton");
    name(QDialogButtonBox::Cancel, "cancelButton");
    name(QDialogButtonBox::Close, "closeButton");
    name(QDialogButtonBox::Help, "helpButton");
    if (QPushButton* ok = box->button(QDialogButtonBox::Ok)) ok->setDefault(true);
    if (QPushButton* help = box->button(QDialogButtonBox::Help)) pressByHelpKey(*help, dialog);
    giveTitleRoom(dialog);
    return box;
}

QDialogButtonBox* makeTellingButtons(QDialog& dialog, const OpenHelp& openHelp, const QString& topic) {
    auto* box = makeButtons(dialog, QDialogButtonBox::Ok | QDialogButtonBox::Help, openHelp, topic);
    box->button(QDialogButtonBox::Ok)->setFocus();
    return box;
}

}  // namespace corvalence::gui
