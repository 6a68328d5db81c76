#include "gui/views/log_model.h"

#include <algorithm>
#include <limits>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr int kChunk = 100;  // rows that are read at once: more than a screen, little even of long lines
constexpr int kChunks = 8;

// By schedule::LogIcon: what the picture says, for those who do not see it.
constexpr std::array kIconTexts = {"",           "detail: ", "changed: ", "",          "",
                                   "database: ", "added: ",  "removed: ", "recycled: "};

}  // namespace

LogModel::LogModel(const QString& title, QObject* parent)
    : QAbstractTableModel(parent), title_(title), chunks_(kChunks) {
    for (std::size_t number = 0; number < icons_.size(); ++number)
        icons_[number] = icon(QStringLiteral("log-%1").arg(number));
}

LogModel::~LogModel() = default;

void LogModel::show(const schedule::LogView* log) {
    beginResetModel();
    chunks_.clear();
    log_ = log;
    constexpr std::size_t kMost = std::numeric_limits<int>::max() / 2;
    rows_ = log == nullptr ? 0 : static_cast<int>(std::min(log->rows(), kMost));
    endResetModel();
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int LogModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 1;
}

const schedule::LogRow& LogModel::row(int number) const {
    const int chunk = number / kChunk;
    Rows* rows = chunks_.object(chunk);
    if (rows == nullptr) {
        rows = new Rows;
        std::string failure = "The log is shorter than it was.";
        try {
            log_->read(static_cast<std::size_t>(chunk) * kChunk, kChunk, [&](const schedule::LogRow& each) {
                rows->push_back(each);
                return true;
            });
        } catch (const base::FileFailure& failed) {
            failure = failed.what();
        }
        // A log that can no longer be read says so in the rows that are missing.
        rows->resize(kChunk, schedule::LogRow{failure, schedule::LogIcon::Changed, false});
        chunks_.insert(chunk, rows);
    }
    return (*rows)[static_cast<std::size_t>(number % kChunk)];
}

QVariant LogModel::data(const QModelIndex& cell, int role) const {
    if (!cell.isValid() || cell.row() >= rows_) return {};
    switch (role) {
        case Qt::DisplayRole: {
            const schedule::LogRow& line = row(cell.row());
            return line.isTruncated ? QVariant(shown(line.text) + QLatin1String("...")) : shown(line.text);
        }
        case Qt::DecorationRole:
            return icons_[static_cast<std::size_t>(row(cell.row()).icon)];
        case Qt::AccessibleTextRole: {
            const schedule::LogRow& line = row(cell.row());
            return QLatin1String(kIconTexts[static_cast<std::size_t>(line.icon)]) + shown(line.text);
        }
        default:
            return {};
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section == 0) return title_;
    return {};
}

}  // namespace corvalence::gui
