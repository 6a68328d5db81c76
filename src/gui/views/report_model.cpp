#include "gui/views/report_model.h"

#include "gui/support/icons.h"
#include "gui/support/text.h"
#include "gui/views/row_roles.h"
#include "shell/commands.h"

namespace corvalence::gui {

namespace {

using reports::ReportKind;

constexpr int kCachedLines = 500;    // a few screens
constexpr int kSizeColumn = 2;       // of file contents
constexpr int kAccountColumn = 2;    // of permissions; the columns before it name the file
constexpr int kFirstTickColumn = 4;  // of permissions
constexpr std::string_view kYes = "Yes";
const QLatin1String kDiffers(", differs");  // for those who do not see it

}  // namespace

ReportModel::ReportModel(const shell::ReportSession& session, QObject* parent)
    : QAbstractTableModel(parent),
      session_(session),
      texts_(kCachedLines),
      yes_(icon(QStringLiteral("yes"))),
      no_(icon(QStringLiteral("no"))) {}

ReportModel::~ReportModel() = default;

void ReportModel::refresh() {
    beginResetModel();
    texts_.clear();
    rows_.clear();
    const std::size_t lines = session_.isShown() ? session_.lines() : 0;
    if (session_.isShown()) {
        const shell::Mode mode = shell::modeOf(session_.row().kind);
        kind_ = icon(shown(shell::commandRow(shell::commandOf(mode)).icon));
    }
    const bool isMany = lines > 0 && session_.row().kind == ReportKind::Permissions;
    rows_.reserve(lines);
    for (std::size_t line = 0; line < lines; ++line) {
        const std::size_t parts = isMany ? session_.renderer().rows(session_.line(line)).size() : 1;
        // A line that is no record has a row as well: nothing of a report is passed over.
        for (std::size_t part = 0; part < std::max<std::size_t>(parts, 1); ++part)
            rows_.push_back({static_cast<std::uint32_t>(line), static_cast<std::uint32_t>(part)});
    }
    endResetModel();
}

int ReportModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ReportModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid() || !session_.isShown()) return 0;
    return static_cast<int>(session_.row().columns.size());
}

bool ReportModel::isPaired() const noexcept {
    const ReportKind kind = session_.row().kind;
    return kind == ReportKind::FileContents || kind == ReportKind::Permissions;
}

bool ReportModel::isTick(int column) const {
    return session_.row().kind == ReportKind::Permissions && column >= kFirstTickColumn;
}

const ReportModel::Texts& ReportModel::rowsOf(std::size_t line) const {
    if (const Texts* cached = texts_.object(line)) return *cached;
    auto* made = new Texts(session_.renderer().rows(session_.line(line)));
    if (made->empty()) made->push_back({std::string(session_.line(line))});
    texts_.insert(line, made);
    return *made;
}

std::string ReportModel::text(const Row& row, int column) const {
    const Texts& rows = rowsOf(row.line);
    if (row.part >= rows.size()) return {};
    const auto& texts = rows[row.part];
    const auto at = static_cast<std::size_t>(column);
    return at < texts.size() ? texts[at] : std::string();
}

bool ReportModel::differs(const Row& row, int column) const {
    if (!isPaired()) return false;
    const std::size_t other = isNow(row) ? row.line - 1 : row.line + 1;  // a page never splits a pair
    if (other >= session_.lines()) return false;
    const std::string value = text(row, column);
    const Texts& others = rowsOf(other);
    if (session_.row().kind == ReportKind::FileContents)
        return others.front().size() > static_cast<std::size_t>(column) &&
               others.front()[static_cast<std::size_t>(column)] != value;
    if (column < kAccountColumn) return false;
    // Entries are those of the same account.
    const std::string account = text(row, kAccountColumn);
    const std::string domain = text(row, kAccountColumn + 1);
    for (const auto& entry : others) {
        if (entry.size() > static_cast<std::size_t>(column) && entry[kAccountColumn] == account &&
            entry[kAccountColumn + 1] == domain) {
            return entry[static_cast<std::size_t>(column)] != value;
        }
    }
    return true;
}

QVariant ReportModel::tickData(const std::string& text, int column, int role) const {
    switch (role) {
        case Qt::DecorationRole:
            return text == kYes ? yes_ : no_;
        case PlainTextRole:
            return shown(text);
        case Qt::ToolTipRole:
            return shown(session_.row().columns[static_cast<std::size_t>(column)]) + QLatin1String(": ") +
                   shown(text);
        default:
            return {};
    }
}

QVariant ReportModel::data(const QModelIndex& cell, int role) const {
    if (!cell.isValid() || cell.row() >= rowCount()) return {};
    const Row& row = rows_[static_cast<std::size_t>(cell.row())];
    // The session may have gone on, and a window may be painted before this model follows.
    if (row.line >= session_.lines()) return {};
    const int column = cell.column();
    if (role == MarkRole) {
        if (!isPaired()) return {};
        return isNow(row) ? QStringLiteral("now") : QStringLiteral("then");
    }
    if (role == DiffersRole) return differs(row, column);
    if (role == Qt::AccessibleTextRole)
        return shown(text(row, column)) + (differs(row, column) ? kDiffers : QLatin1String());
    if (isTick(column)) {
        const std::string value = text(row, column);
        return value.empty() ? QVariant() : tickData(value, column, role);
    }
    if (role == Qt::DecorationRole) return column == 0 ? QVariant(kind_) : QVariant();
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return shown(text(row, column));
    if (role == Qt::TextAlignmentRole && session_.row().kind == ReportKind::FileContents &&
        column == kSizeColumn) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    return {};
}

QVariant ReportModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || section < 0) return {};
    if (orientation == Qt::Vertical)
        return section < rowCount() ? index(section, 0).data(MarkRole) : QVariant();
    if (section >= columnCount()) return {};
    return shown(session_.row().columns[static_cast<std::size_t>(section)]);
}

}  // namespace corvalence::gui
