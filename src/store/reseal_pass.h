#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/file_failure.h"
#include "crypto/secret_text.h"
#include "store/reseal_target.h"
#include "store/vault.h"

namespace corvalence::store {

/// A volume lacks the room for the new files. what() says where and how much.
class NoRoom : public base::FileFailure {
  public:
    NoRoom(const std::string& folder, std::uint64_t needed, std::uint64_t available);
};

/// Throws NoRoom where a volume has not the room for second copies of the targets that lie on it. A volume
/// that does not tell passes.
void requireRoom(Vault& vault, const std::vector<ResealTarget>& targets);

/// Brings sealed files from the session's key to another one. Each is unsealed and sealed in one stream,
/// beside the old file, and proved by reading the new one back; nothing is put in place before commit(), and
/// until then going away leaves everything as it was. Plain text is in memory only, a block at a time.
/// Throws base::FileFailure.
class ResealPass {
  public:
    ResealPass(Vault& vault, const crypto::Session& next) : vault_(vault), next_(next) {}

    /// False where the user cancelled. An empty file stays as it is.
    bool reseal(const std::vector<ResealTarget>& targets, platform::Progress& progress);
    /// Seals a text that takes the place of the file at `path`.
    void seal(const std::string& path, std::string_view text, const crypto::ChainValue& chain);
    /// The MD5 that the new file of a text target has, if `path` is one and had the MD5 `before`.
    std::optional<std::string> digestNow(const std::string& path, const std::string& before) const;

    /// All at once, in the order in which they were sealed. Throws MovesPending where that has begun and
    /// could not be ended, base::FileFailure where nothing was touched.
    void commit();

  private:
    class Transfer;
    struct Digests {
        std::string before;
        std::string now;
    };

    Vault& vault_;
    const crypto::Session& next_;
    std::vector<std::pair<crypto::TemporaryFile, std::string>> moves_;
    std::map<std::string, Digests> digests_;
};

}  // namespace corvalence::store
