#include "gui/views/file_list_model.h"

#include <algorithm>
#include <numeric>

#include "files/file_texts.h"
#include "gui/support/icons.h"
#include "gui/support/text.h"
#include "platform/time_text.h"
#include "reports/report_kind.h"

namespace corvalence::gui {

namespace {

// In the order of the report about the same files.
enum Column : int { Name, Digest, Size, Type, Location, Attributes, Modified, Created };

std::span<const std::string_view> columns() {
    return reports::reportRow(reports::ReportKind::FileContents).columns;
}

}  // namespace

FileListModel::FileListModel(QObject* parent)
    : QAbstractTableModel(parent), icon_(icon(QStringLiteral("file"))) {}

FileListModel::~FileListModel() = default;

void FileListModel::open(const store::Vault& vault, const store::OpenDatabaseContext& context) {
    load(vault, context, 1);
}

void FileListModel::reload(const store::Vault& vault, const store::OpenDatabaseContext& context) {
    load(vault, context, page());
}

void FileListModel::load(const store::Vault& vault, const store::OpenDatabaseContext& context,
                         std::size_t page) {
    // Before the reset: a setting that cannot be read is told, and windows are painted meanwhile.
    const auto pageSize = static_cast<std::size_t>(vault.configuration.number(settings::key::kPageSize));
    beginResetModel();
    list_.reset();
    try {
        auto list = std::make_unique<files::RecordList>(vault, context, pageSize);
        list->show(page);
        vault_ = &vault;
        if (!types_) types_.emplace(vault.platform.paths, vault.platform.types);
        list_ = std::move(list);
    } catch (...) {
        placeRows();
        endResetModel();
        throw;
    }
    placeRows();
    endResetModel();
}

void FileListModel::close() {
    beginResetModel();
    list_.reset();
    placeRows();
    endResetModel();
}

void FileListModel::goToPage(std::size_t page) {
    if (!list_) return;
    beginResetModel();
    try {
        list_->show(page);
    } catch (...) {
        endResetModel();
        throw;
    }
    placeRows();
    endResetModel();
}

std::string FileListModel::caption() const {
    return "Page: " + std::to_string(page()) + " of " + std::to_string(pages());
}

std::string FileListModel::path(int row) const {
    return std::string(files::pathOfLine(list_->line(lineOf(row))));
}

std::string FileListModel::key(int row) const {
    return list_->key(lineOf(row));
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int FileListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns().size());
}

std::string FileListModel::text(std::size_t line, int column) const {
    const std::string path(files::pathOfLine(list_->line(line)));
    const base::PathRules& paths = vault_->platform.paths;
    if (column == Name) return std::string(paths.fileName(path));
    if (column == Location) return std::string(paths.folder(path));
    if (column == Type) return types_->of(path);
    const auto record = list_->record(line);
    if (!record) return {};
    switch (column) {
        case Digest:
            return record->digest;
        case Size:
            return std::to_string(record->size);
        case Attributes:
            return files::attributeLetters(record->attributes);
        case Modified:
            return platform::formatFileTime(vault_->platform.clock, record->written);
        default:
            return platform::formatFileTime(vault_->platform.clock, record->created);
    }
}

QVariant FileListModel::data(const QModelIndex& cell, int role) const {
    if (!cell.isValid() || cell.row() >= rowCount()) return {};
    switch (role) {
        case Qt::DisplayRole:
            return shown(text(lineOf(cell.row()), cell.column()));
        case Qt::ToolTipRole:
            return cell.column() == Digest ? shown(text(lineOf(cell.row()), Digest))
                                           : shown(path(cell.row()));
        case Qt::DecorationRole:
            return cell.column() == Name ? QVariant(icon_) : QVariant();
        case Qt::TextAlignmentRole:
            return cell.column() == Size ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
        default:
            return {};
    }
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount())
        return {};
    return shown(columns()[static_cast<std::size_t>(section)]);
}

void FileListModel::sort(int column, Qt::SortOrder order) {
    if (column == sortColumn_ && order == sortOrder_) return;
    sortColumn_ = column;
    sortOrder_ = order;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::uint32_t> lines;
    for (const QModelIndex& cell : before)
        lines.push_back(order_[static_cast<std::size_t>(cell.row())]);
    placeRows();
    std::vector<int> rows(order_.size());
    for (std::size_t row = 0; row < order_.size(); ++row)
        rows[order_[row]] = static_cast<int>(row);
    QModelIndexList after;
    for (qsizetype at = 0; at < before.size(); ++at)
        after.append(index(rows[lines[static_cast<std::size_t>(at)]], before[at].column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void FileListModel::placeRows() {
    order_.resize(list_ ? list_->rows() : 0);
    std::iota(order_.begin(), order_.end(), 0U);
    if (sortColumn_ < 0) return;
    // Numbers and times go by their values, the rest by its text; the texts are made once.
    struct Key {
        std::uint64_t number = 0;
        std::string text;
        auto operator<=>(const Key&) const = default;
    };
    std::vector<Key> keys(order_.size());
    for (std::size_t line = 0; line < keys.size(); ++line) {
        if (sortColumn_ != Size && sortColumn_ != Modified && sortColumn_ != Created) {
            keys[line].text = text(line, sortColumn_);
        } else if (const auto record = list_->record(line)) {
            keys[line].number = sortColumn_ == Size       ? record->size
                                : sortColumn_ == Modified ? record->written.ticks
                                                          : record->created.ticks;
        }
    }
    std::stable_sort(order_.begin(), order_.end(), [&](std::uint32_t a, std::uint32_t b) {
        return sortOrder_ == Qt::AscendingOrder ? keys[a] < keys[b] : keys[b] < keys[a];
    });
}

}  // namespace corvalence::gui
