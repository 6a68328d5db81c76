#include "gui/dialogs/masked_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QProxyStyle>

#include "base/utf8.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

class NoCaretStyle : public QProxyStyle {
  public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

/// Whether a key stands for the character that it brings; with Ctrl it is a command. AltGr is Ctrl and Alt on
/// some systems.
bool isTyped(const QKeyEvent& event) {
    if (event.text().isEmpty()) return false;
    const auto modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    return modifiers != Qt::ControlModifier && (modifiers & Qt::MetaModifier) == 0 &&
           (event.text().at(0).isPrint() || event.text().at(0).isSurrogate());
}

bool deletes(const QKeyEvent& event) {
    return event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete ||
           event.matches(QKeySequence::Cut);
}

}  // namespace

MaskedEdit::MaskedEdit(QWidget* parent) : QLineEdit(parent) {
    auto* style = new NoCaretStyle;
    style->setParent(this);
    setStyle(style);
    setAccessibleName(QStringLiteral("Password"));
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
    setDragEnabled(false);
    setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                        Qt::ImhNoAutoUppercase);
    // Whatever reaches the field by another way, such as a tool for its accessibility, is no part of the
    // entry.
    connect(this, &QLineEdit::textChanged, this, [this] { showStars(); });
}

void MaskedEdit::startAgain() {
    entry_.startAgain();
    showStars();
}

bool MaskedEdit::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // Keys of the entry are not to be taken for shortcuts of the window.
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (key.matches(QKeySequence::Paste) || deletes(key)) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void MaskedEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        take(QApplication::clipboard()->text(), true);
    } else if (deletes(*event)) {
        startAgain();
    } else if (isTyped(*event)) {
        take(event->text(), false);
    } else {
        event->ignore();
        return;
    }
    event->accept();
}

void MaskedEdit::inputMethodEvent(QInputMethodEvent* event) {
    if (!event->commitString().isEmpty()) take(event->commitString(), false);
    event->accept();
}

void MaskedEdit::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void MaskedEdit::mouseReleaseEvent(QMouseEvent* event) {
    const QClipboard& clipboard = *QApplication::clipboard();
    if (event->button() == Qt::MiddleButton && clipboard.supportsSelection())
        take(clipboard.text(QClipboard::Selection), true);
    event->accept();
}

void MaskedEdit::take(const QString& text, bool isPasted) {
    std::string bytes = bytesOf(text);
    const bool isCharacter = base::utf8Length(bytes) == bytes.size();
    const bool isRefused = isCharacter && !isPasted ? entry_.type(bytes) == core::MaskedEntry::Typed::Refused
                                                    : !entry_.paste(bytes);
    crypto::secureZero(bytes.data(), bytes.size());
    if (isRefused) QApplication::beep();
    showStars();
}

void MaskedEdit::showStars() {
    const QString stars = QString::fromStdString(entry_.stars());
    if (text() != stars) setText(stars);
    setCursorPosition(0);
}

}  // namespace corvalence::gui
