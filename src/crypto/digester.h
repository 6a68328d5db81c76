#pragma once

#include <string>
#include <variant>

#include "base/bytes.h"
#include "crypto/digest_code.h"
#include "crypto/hash_engine.h"
#include "crypto/md5.h"

namespace corvalence::crypto {

/// One streaming digest of the algorithm that a DigestCode names.
class Digester {
  public:
    explicit Digester(DigestCode code);

    void update(base::ByteView bytes);
    /// Lower-case hexadecimal text of digestKind(code).width characters. The digester is then spent.
    std::string finish();

  private:
    std::variant<Md5, HashEngine> engine_;
};

}  // namespace corvalence::crypto
