#include "gui/support/dialog_buttons.h"

#include <QPushButton>

namespace corvalence::gui {

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
    return box;
}

}  // namespace corvalence::gui
