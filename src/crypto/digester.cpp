#include "crypto/digester.h"

#include "base/hex_text.h"

namespace corvalence::crypto {
namespace {

int shaTypeOf(DigestCode code) noexcept {
    if (code == DigestCode::Sha1) return HashEngine::SHA1;
    return code == DigestCode::Sha256 ? HashEngine::SHA256 : HashEngine::SHA512;
}

}  // namespace

Digester::Digester(DigestCode code) {
    if (code != DigestCode::Md5) engine_.emplace<HashEngine>().Init(shaTypeOf(code));
}

void Digester::update(base::ByteView bytes) {
    if (Md5* md5 = std::get_if<Md5>(&engine_)) {
        md5->update(bytes);
    } else {
        std::get<HashEngine>(engine_).Update(bytes);
    }
}

std::string Digester::finish() {
    if (Md5* md5 = std::get_if<Md5>(&engine_)) return base::hexText(md5->finish());
    HashEngine& engine = std::get<HashEngine>(engine_);
    engine.Final();
    return engine.hexText();
}

}  // namespace corvalence::crypto
