#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "crypto/sealed_stream.h"
#include "crypto/secret_text.h"
#include "crypto/working_files.h"

namespace corvalence::crypto {

// Whole sealed files: unsealed into a working copy or into memory, sealed beside their old selves and renamed
// over them. A wrong key or chain value is never detected here: the output is then garbage, which the reader
// of the content tells.

/// Who unseals what, by the reference code that ends the message about a missing file.
struct UnsealVariant {
    std::string_view referenceCode;
    EndRule rule;
};

inline constexpr UnsealVariant kUnsealDatabase = {"CCD", EndRule::textTail()};
inline constexpr UnsealVariant kUnsealBackupFolder = {"CCDN", EndRule::textTail()};
inline constexpr UnsealVariant kUnsealIndexCheck = {"CCDNK", EndRule::textTail()};
inline constexpr UnsealVariant kUnsealIndexList = {"LVDN", EndRule::textTail()};
inline constexpr UnsealVariant kUnsealIndexDelete = {"MFRDN", EndRule::textTail()};
inline constexpr UnsealVariant kUnsealSchedule = {"MFRDNSC", EndRule::textTail()};

/// The source of an unsealing does not exist. what() is the message for the user, with the reference code.
class RequiredFileMissing : public base::FileFailure {
  public:
    RequiredFileMissing(const std::string& path, std::string_view referenceCode);
};

/// Suffixes of working files, behind the sealed file's name.
inline constexpr std::string_view kSealedBesideSuffix = "123456789s";

/// Unseals the file at `source` into `destination`, from its start. Throws RequiredFileMissing, or
/// base::FileFailure for a file that cannot be opened or read, is no run of whole blocks, or ends early; the
/// destination then holds no more than a part, and nothing may be rewritten from it. `digest`, where given,
/// is fed every sealed byte.
void unsealFile(platform::FileSystem& files, const std::string& source, platform::File& destination,
                const SessionKey& key, const ChainValue& chain, const UnsealVariant& variant,
                Md5* digest = nullptr);

/// The same into memory: the plain form then never reaches a disk.
/// `atBlock`, where given, is called for every block of the file and may end the work by throwing.
SecretText unsealText(platform::FileSystem& files, const std::string& source, const SessionKey& key,
                      const ChainValue& chain, const UnsealVariant& variant, Md5* digest = nullptr,
                      const std::function<void()>& atBlock = {});

/// Seals `text` into a file beside `destination`, flushes it and renames it over `destination`. On failure
/// the old file is as it was.
void sealFile(WorkingFiles& working, std::string_view text, const std::string& destination,
              const SessionKey& key, const ChainValue& chain);

/// Seals a short text that holds no NUL as one string: every cipher byte 0 becomes 0x7F, so that a text
/// setting can hold it. A cipher byte that truly is 0x7F cannot be told from those, and such a text comes
/// back wrong.
std::string sealString(std::string_view text, const SessionKey& key, const ChainValue& chain);

/// The inverse. In each block the text ends at the first byte below 32 or above 126.
std::string unsealString(std::string_view sealed, const SessionKey& key, const ChainValue& chain);

}  // namespace corvalence::crypto
