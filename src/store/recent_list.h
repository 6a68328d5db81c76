#pragma once

#include <string>
#include <vector>

#include "crypto/session.h"
#include "settings/configuration.h"
#include "store/database_deletion.h"
#include "store/database_index.h"

namespace corvalence::store {

/// The databases that were opened last, in the settings: "Recent File List\File1" and so on, most recent
/// first. Each text is a backslash and behind it the path and a line feed, sealed as a string, every sealed
/// byte as the character of its number.
///
/// The list is a convenience: an entry that means no database of the index is passed over and goes at the
/// next change, and a text that cannot be stored stays as it was, without a word.
class RecentList : public DeletionListener {
  public:
    /// Entries at the most, whatever the settings say.
    static constexpr std::size_t kMost = 10;

    RecentList(settings::Configuration& configuration, const crypto::Session& session)
        : configuration_(configuration), session_(session) {}

    /// The paths of the list, as the records have them.
    std::vector<std::string> paths(const std::vector<IndexRecord>& records) const;
    /// Puts a database of the index first. Nothing is written where it stands there already.
    void opened(const std::string& path, const DatabaseIndex& index);
    void databaseDeleted(const std::string& path) override;
    /// Takes the place of the whole list, cut to the length that the settings want.
    void write(const std::vector<std::string>& paths);

    /// Cuts the list to the length that the settings want: none with Config7 off or Config6 out of range.
    static void cut(settings::Configuration& configuration);
    /// Empties it.
    static void empty(settings::Configuration& configuration);

  private:
    std::string sealed(const std::string& path) const;

    settings::Configuration& configuration_;
    const crypto::Session& session_;
};

}  // namespace corvalence::store
