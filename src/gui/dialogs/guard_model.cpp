#include "gui/dialogs/guard_model.h"

#include "gui/support/icons.h"
#include "gui/support/text.h"
#include "gui/views/row_roles.h"

namespace corvalence::gui {

namespace {

constexpr int kAccount = 0;
constexpr int kDomain = 1;
constexpr int kFirstRight = 2;
constexpr int kWords = kFirstRight + static_cast<int>(components::kPermissionColumns.size());
constexpr int kColumns = kWords + 1;

QVariant accountData(const shell::GuardRow& row, int role) {
    switch (role) {
        case Qt::DisplayRole:
            return shown(row.account);
        case Qt::DecorationRole:
            return icon(row.isWeak ? QStringLiteral("warning") : QStringLiteral("mode-permissions"));
        case Qt::ToolTipRole:
        case Qt::AccessibleDescriptionRole:
            return row.isWeak ? QStringLiteral("Partial access") : QString();
        default:
            return {};
    }
}

QVariant rightData(bool isGiven, int role) {
    switch (role) {
        case Qt::DecorationRole:
            return icon(isGiven ? QStringLiteral("yes") : QStringLiteral("no"));
        case PlainTextRole:
        case Qt::AccessibleTextRole:
            return isGiven ? QStringLiteral("Yes") : QStringLiteral("No");
        default:
            return {};
    }
}

}  // namespace

void GuardModel::setRows(std::vector<shell::GuardRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int GuardModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GuardModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant GuardModel::data(const QModelIndex& cell, int role) const {
    if (!cell.isValid()) return {};
    const shell::GuardRow& row = rows_[static_cast<std::size_t>(cell.row())];
    const int column = cell.column();
    if (column == kAccount) return accountData(row, role);
    if (column != kDomain && column != kWords)
        return rightData(row.ticks(static_cast<std::size_t>(column - kFirstRight)), role);
    return role == Qt::DisplayRole ? shown(column == kDomain ? row.domain : row.inWords()) : QVariant();
}

QVariant GuardModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    if (section == kAccount) return QStringLiteral("Account");
    if (section == kDomain) return QStringLiteral("Domain");
    if (section == kWords) return QStringLiteral("Details");
    return shown(components::kPermissionColumns[static_cast<std::size_t>(section - kFirstRight)].name);
}

}  // namespace corvalence::gui
