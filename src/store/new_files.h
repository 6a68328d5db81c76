#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "crypto/sealed_stream.h"
#include "crypto/working_files.h"
#include "store/component_index.h"
#include "store/vault.h"

namespace corvalence::store {

/// The files of a baseline that comes into being: made together, sealed while they are written so that no
/// plain copy is ever on a disk, and gone together unless they are kept. What a run that is ended leaves of
/// them, the next start removes.
class NewFiles {
  public:
    /// Makes the files, none of which may exist. Throws base::FileFailure.
    NewFiles(Vault& vault, const std::vector<std::string>& paths);
    ~NewFiles();
    NewFiles(const NewFiles&) = delete;
    NewFiles& operator=(const NewFiles&) = delete;

    /// Writes a line and its CR LF to one of the files, by its place in `paths`. Throws base::FileFailure.
    void write(std::size_t file, std::string_view line);

    /// Seals the last blocks and brings all to the device. The records are there afterwards.
    void finish();
    const std::vector<SealedFileRecord>& records() const noexcept { return records_; }

    /// Copies all files to their backup databases, once they are listed, and keeps them. Throws
    /// base::FileFailure where a copy fails: the files stay, and the next start tries again.
    void backUpAndKeep();

  private:
    struct NewFile;

    Vault& vault_;
    std::vector<std::unique_ptr<NewFile>> files_;
    std::vector<SealedFileRecord> records_;
};

}  // namespace corvalence::store
