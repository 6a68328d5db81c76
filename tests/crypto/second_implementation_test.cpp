#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/hex_text.h"
#include "crypto/hash_engine.h"
#include "crypto/md5.h"
#include "temp_folder.h"

namespace corvalence::crypto {
namespace {

using Code = HashEngine::Code;

/// Random files around every block border and of a few megabytes, and what `openssl dgst` says of them.
class SecondImplementation : public testing::Test {
  protected:
    void SetUp() override {
        if (run("version").empty()) GTEST_SKIP() << "openssl is not installed";
        std::mt19937 random(20);
        for (std::size_t length = 0; length <= 300; ++length)
            add(length, random);
        for (const std::size_t length : {4096u, 1u << 20, (3u << 20) + 77})
            add(length, random);
    }

    /// The digests of all files, in their order.
    std::vector<std::string> digestsBy(const std::string& algorithm) const {
        std::string arguments = "dgst -r -" + algorithm;
        for (std::size_t i = 0; i < messages_.size(); ++i)
            arguments += quoted(folder_ / std::to_string(i));
        std::vector<std::string> digests = run(arguments);
        for (std::string& line : digests)
            line.resize(line.find(' '));
        return digests;
    }

    const std::vector<std::vector<std::uint8_t>>& messages() const { return messages_; }

  private:
    static std::string quoted(const std::string& path) { return " \"" + path + "\""; }

    void add(std::size_t length, std::mt19937& random) {
        std::vector<std::uint8_t> bytes(length);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        folder_.write(std::to_string(messages_.size()), base::textOf(bytes));
        messages_.push_back(std::move(bytes));
    }

    /// What openssl prints, by lines; none if it fails or is missing.
    std::vector<std::string> run(const std::string& arguments) const {
        const std::string command = "openssl " + arguments + " >" + quoted(folder_ / "output") + " 2>&1";
        if (std::system(command.c_str()) != 0) return {};
        std::istringstream stream(folder_.read("output"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

    test::TempFolder folder_;
    std::vector<std::vector<std::uint8_t>> messages_;
};

/// Feeds the message in two pieces, cut where a third of it ends.
template <typename Update>
void feed(base::ByteView message, Update update) {
    update(message.first(message.size() / 3));
    update(message.subspan(message.size() / 3));
}

TEST_F(SecondImplementation, GivesTheSameMd5) {
    const std::vector<std::string> expected = digestsBy("md5");
    ASSERT_EQ(expected.size(), messages().size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        Md5 md5;
        feed(messages()[i], [&](base::ByteView piece) { md5.update(piece); });
        EXPECT_EQ(base::hexText(md5.finish()), expected[i]) << messages()[i].size() << " bytes";
    }
}

TEST_F(SecondImplementation, GivesTheSameShaOfEveryTypeWithEitherCode) {
    constexpr std::pair<int, const char*> kTypes[] = {{HashEngine::SHA1, "sha1"},
                                                      {HashEngine::SHA224, "sha224"},
                                                      {HashEngine::SHA256, "sha256"},
                                                      {HashEngine::SHA384, "sha384"},
                                                      {HashEngine::SHA512, "sha512"}};
    for (const auto& [type, name] : kTypes) {
        SCOPED_TRACE(name);
        const std::vector<std::string> expected = digestsBy(name);
        ASSERT_EQ(expected.size(), messages().size());
        for (const Code code : {Code::Portable, Code::Automatic}) {
            HashEngine engine(code);
            for (std::size_t i = 0; i < expected.size(); ++i) {
                engine.Init(type);
                feed(messages()[i], [&](base::ByteView piece) { engine.Update(piece); });
                engine.Final();
                EXPECT_EQ(engine.hexText(), expected[i]) << messages()[i].size() << " bytes";
            }
        }
    }
}

}  // namespace
}  // namespace corvalence::crypto
