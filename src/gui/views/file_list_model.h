#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "files/file_type_texts.h"
#include "files/record_list.h"

namespace corvalence::gui {

/// The files that an open database lists, a page at a time. Texts are made of the record when a cell is
/// shown.
class FileListModel : public QAbstractTableModel {
  public:
    explicit FileListModel(QObject* parent = nullptr);
    ~FileListModel() override;

    /// Lists the database from its first page on, by pages of the size that the settings say. Throws
    /// files::DatabaseChanged, base::FileFailure; the list is empty then. The vault is to outlive the list.
    void open(const store::Vault& vault, const store::OpenDatabaseContext& context);
    /// The same, but stays on the page that is shown, after the database was changed.
    void reload(const store::Vault& vault, const store::OpenDatabaseContext& context);
    void close();
    bool isOpen() const noexcept { return list_ != nullptr; }

    /// Throws as open() does; the page stays then. A number beyond the last page means that one.
    void goToPage(std::size_t page);
    std::size_t page() const noexcept { return list_ ? list_->page() : 1; }
    std::size_t pages() const noexcept { return list_ ? list_->pages() : 1; }
    /// "Page: 2 of 5".
    std::string caption() const;
    /// Of the whole database.
    std::uint64_t count() const noexcept { return list_ ? list_->count() : 0; }
    std::uint64_t totalSize() const noexcept { return list_ ? list_->totalSize() : 0; }

    std::string path(int row) const;
    /// What no other record of the database begins with: path, separator, digest.
    std::string key(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// Within the page; column -1: as the database has them.
    void sort(int column, Qt::SortOrder order) override;

  private:
    void load(const store::Vault& vault, const store::OpenDatabaseContext& context, std::size_t page);
    void placeRows();
    std::size_t lineOf(int row) const { return order_[static_cast<std::size_t>(row)]; }
    std::string text(std::size_t line, int column) const;

    const store::Vault* vault_ = nullptr;
    std::unique_ptr<files::RecordList> list_;
    std::vector<std::uint32_t> order_;                            // lines of the page as they are shown
    mutable std::optional<files::FileTypeTexts> types_;
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    QIcon icon_;
};

}  // namespace corvalence::gui
