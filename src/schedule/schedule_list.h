#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "crypto/secret_text.h"
#include "store/database_deletion.h"
#include "store/vault.h"

namespace corvalence::schedule {

/// What the list holds.
struct ScheduleContent {
    std::vector<std::string> databases;  // full paths, in the order of checking
    std::vector<std::string> damaged;    // lines that name no database, without their ends
    /// Behind the last whole block of the sealed file lie bytes that no key opens.
    bool isTorn = false;

    bool isDamaged() const noexcept { return isTorn || !damaged.empty(); }
};

/// The sealed list "Database Checking Schedule": one line a database, path 0x7F …, CR LF, in the order of
/// checking. Lines may be of any length; only what stands before the first separator counts.
///
/// Each call unseals it into memory, and those that change it seal it beside itself and rename it over the
/// old one: a crash leaves the old or the new list. Lines that are damaged stay where they are until
/// dropDamaged(). Throws base::FileFailure, and crypto::RequiredFileMissing where there is no list.
class ScheduleList : public store::DeletionListener {
  public:
    explicit ScheduleList(store::Vault& vault) : vault_(vault) {}

    std::string path() const;

    ScheduleContent read() const;

    /// Adds a database at the end; false, and nothing is written, where it is listed. A list that is missing
    /// is begun anew. InvalidFile where the list is torn, BadPath for a path that no record holds.
    bool add(const std::string& database);
    /// Puts a database with an interval of its own at the end, in the place of what was listed under its path
    /// and of lines that begin with a blank: path 0x7F seconds 0x7F letter. The same failures.
    void addTimed(const std::string& database, std::uint32_t seconds, char letter);
    /// Takes out every line that begins with the path, those of longer paths included, and gives what they
    /// named. Nothing is written where none does. InvalidFile where the list is torn.
    std::vector<std::string> remove(const std::string& database);
    /// Takes out the damaged lines and what follows the last whole block, and gives the lines.
    std::vector<std::string> dropDamaged();

    /// As remove(); others that go with it are told. Nothing where there is no list.
    void databaseDeleted(const std::string& database) override;

  private:
    struct Lines;
    Lines readLines() const;
    Lines linesToExtend(const std::string& database) const;
    void write(std::string_view text);

    store::Vault& vault_;
};

}  // namespace corvalence::schedule
