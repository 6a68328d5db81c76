#include "gui/views/file_list_view.h"

#include <QHeaderView>

namespace corvalence::gui {

FileListView::FileListView(QWidget* parent) : ListTable(parent) {
    setObjectName(QStringLiteral("fileList"));
    setAccessibleName(QStringLiteral("Listed files"));
    setAcceptDrops(true);
    setModel(&files_);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    connect(&files_, &QAbstractItemModel::modelReset, this, [this] { showState(); });
    showState();
}

void FileListView::showState() {
    setEmptyText(
        files_.isOpen()
            ? QStringLiteral(
                  "The database lists no files yet.\nAdd some with the menu Add Files, or drop them here.")
            : QString());
    // Once: widths that the user has chosen stay.
    if (isFitted_ || files_.rowCount() == 0) return;
    isFitted_ = true;
    fitColumns();
}

std::vector<std::string> FileListView::selectedPaths() const {
    std::vector<std::string> paths;
    for (const int row : selectedRows())
        paths.push_back(files_.path(row));
    return paths;
}

}  // namespace corvalence::gui
