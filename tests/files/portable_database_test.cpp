#include <gtest/gtest.h>

#include "base/hex_text.h"
#include "crypto/md5.h"
#include "crypto/sealed_stream.h"
#include "crypto/session.h"
#include "files/file_record.h"
#include "memory_file.h"
#include "store/index_record.h"

namespace corvalence::test {
namespace {

/// A database and its index as they lie on disk, by their MD5. The same on every system, whatever system the
/// path belongs to.
struct Sample {
    const char* database;
    const char* file;
    const char* sealedDatabase;
    const char* sealedIndex;
};

class PortableDatabase : public testing::TestWithParam<Sample> {
  protected:
    std::vector<std::uint8_t> sealed(std::string_view text, const crypto::ChainValue& chain) const {
        MemoryFile file;
        crypto::SealWriter writer(file, key_, chain);
        writer.write(base::bytesOf(text));
        writer.finish();
        return file.bytes;
    }
    std::string unsealed(const std::vector<std::uint8_t>& bytes, const crypto::ChainValue& chain) const {
        MemoryFile file;
        file.bytes = bytes;
        crypto::UnsealReader reader(file, bytes.size(), key_, chain, crypto::EndRule::textTail());
        std::string text(bytes.size(), '\0');
        text.resize(reader.read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}));
        return text;
    }
    static std::string digestOf(const std::vector<std::uint8_t>& bytes) {
        return base::hexText(crypto::Md5::of(bytes));
    }

    const crypto::SessionKey key_{"a password"};
};

// Which text seals to which bytes is what makes a database of one system open on the other.
TEST_P(PortableDatabase, IsTheSameBytesOnEverySystem) {
    files::FileRecord record;
    record.path = GetParam().file;
    record.digest = std::string(64, 'd');
    record.size = 4'000'000'000;
    record.attributes = 0x21;
    record.written = base::FileTime::fromHalves(-5, 7);
    record.created = base::FileTime::fromHalves(30'000'000, -1);
    const std::string records = record.render();
    const auto chain = crypto::PathIV(GetParam().database);
    const auto database = sealed(records, chain);
    EXPECT_EQ(digestOf(database), GetParam().sealedDatabase);
    EXPECT_EQ(unsealed(database, chain), records);

    store::IndexRecord line;
    line.path = GetParam().database;
    line.fileDigest = digestOf(database);
    line.created = base::FileTime::fromHalves(30'000'000, 1);
    line.number = 3;
    line.digest = crypto::DigestCode::Sha256;
    const auto& index = crypto::ChainValues().IndexIV;
    EXPECT_EQ(digestOf(sealed(line.render(), index)), GetParam().sealedIndex);
    const std::string read = unsealed(sealed(line.render(), index), index);
    EXPECT_EQ(store::IndexRecord::parse(read)->path, GetParam().database);
}

INSTANTIATE_TEST_SUITE_P(
    Systems, PortableDatabase,
    testing::Values(Sample{"C:\\cv\\Databases\\db", "C:\\Files\\\xD0\x96.txt",
                           "6e6c4f48abfce7a707fdf61b724d7998", "9da4ff451a0b67d5bfb9b87a67f5574e"},
                    Sample{"/var/lib/cv/Databases/db", "/etc/\xD0\x96", "09f2885b70eeb7fd4394bdf0d79d72f8",
                           "892f3872c9168cf99aedc3a4684fc77b"}));

}  // namespace
}  // namespace corvalence::test
