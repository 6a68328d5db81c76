#include <QFileInfo>
#include <QMessageBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

#include "gui/support/progress_window.h"
#include "gui/views/table_printer.h"

namespace corvalence::gui {

namespace {

/// False where the user cancelled in the middle; nothing where the printer fails.
std::optional<bool> printOn(QPrinter& printer, const PrintedList& list, QWidget* parent) {
    QPainter painter;
    if (!painter.begin(&printer)) return std::nullopt;
    WindowProgress progress("Printing: " + list.title.toStdString(), parent);
    bool wasCancelled = false;
    TablePrinter table(printer, painter, list.title, {printer.fromPage(), printer.toPage()});
    const bool isDone = table.print(list, [&](double done) {
        progress.bar(static_cast<std::uint32_t>(done * platform::Progress::kSteps));
        wasCancelled = wasCancelled || progress.cancelled();
        return wasCancelled;
    });
    if (wasCancelled) {
        printer.abort();
        return false;
    }
    if (!isDone || !painter.end()) return std::nullopt;
    return true;
}

}  // namespace

void printTable(const PrintedList& list, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    // Dialogs make the name of the file to print to of it, below the user's own folder.
    printer.setDocName(QFileInfo(list.title).fileName());
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, parent);
    dialog.setObjectName(QStringLiteral("printDialog"));
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    if (dialog.exec() != QDialog::Accepted) return;
    if (!printOn(printer, list, parent)) {
        QMessageBox::warning(parent, QStringLiteral("Corvalence"),
                             QStringLiteral("The list could not be printed."));
    }
}

void printTable(QAbstractItemModel& model, const QString& title, QWidget* parent) {
    printTable(PrintedList{title, 1, [&](std::size_t) -> QAbstractItemModel& { return model; }}, parent);
}

}  // namespace corvalence::gui
