#include "damages.h"

#include <algorithm>
#include <random>

namespace corvalence::test {

namespace {

constexpr std::size_t kBlock = 16;
constexpr int kRegions = 12;
constexpr std::size_t kLengths[] = {1, 15, 16, 17, 32, 48};

std::string flipped(std::string bytes, std::size_t at, int bit) {
    if (at < bytes.size()) bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
    return bytes;
}

std::string random(std::size_t size) {
    std::mt19937 numbers(20240229);
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(numbers()); });
    return bytes;
}

std::string swapped(std::string bytes, std::size_t a, std::size_t b) {
    if ((std::max(a, b) + 1) * kBlock > bytes.size()) return random(bytes.size());
    std::swap_ranges(bytes.begin() + static_cast<std::ptrdiff_t>(a * kBlock),
                     bytes.begin() + static_cast<std::ptrdiff_t>((a + 1) * kBlock),
                     bytes.begin() + static_cast<std::ptrdiff_t>(b * kBlock));
    return bytes;
}

void addFlips(std::vector<Damage>& all) {
    for (int region = 0; region <= kRegions; ++region) {
        all.push_back({"bit flipped in region " + std::to_string(region), [region](const std::string& bytes) {
                           const std::size_t at =
                               (bytes.size() - 1) * static_cast<std::size_t>(region) / kRegions;
                           return flipped(bytes, at, region % 8);
                       }});
    }
}

void addCuts(std::vector<Damage>& all) {
    for (const std::size_t left : kLengths) {
        all.push_back({"cut to " + std::to_string(left),
                       [left](const std::string& bytes) { return bytes.substr(0, left); }});
    }
    for (const std::size_t lost : kLengths) {
        all.push_back({std::to_string(lost) + " bytes cut off", [lost](const std::string& bytes) {
                           return bytes.substr(0, bytes.size() - std::min(lost, bytes.size()));
                       }});
    }
    all.push_back({"cut to half its blocks", [](const std::string& bytes) {
                       return bytes.substr(0, bytes.size() / kBlock / 2 * kBlock);
                   }});
}

void addExtensions(std::vector<Damage>& all) {
    for (const std::size_t more : {std::size_t{1}, kBlock, std::size_t{4096}}) {
        all.push_back({"extended by " + std::to_string(more) + " zeros",
                       [more](const std::string& bytes) { return bytes + std::string(more, '\0'); }});
    }
    all.push_back({"twice behind one another", [](const std::string& bytes) { return bytes + bytes; }});
}

void addSplices(std::vector<Damage>& all) {
    all.push_back(
        {"first two blocks swapped", [](const std::string& bytes) { return swapped(bytes, 0, 1); }});
    all.push_back({"first and last block swapped", [](const std::string& bytes) {
                       return swapped(bytes, 0, std::max<std::size_t>(bytes.size() / kBlock, 1) - 1);
                   }});
    all.push_back({"a block left out", [](const std::string& bytes) {
                       return bytes.substr(0, kBlock) + bytes.substr(std::min(2 * kBlock, bytes.size()));
                   }});
    all.push_back({"first block gone",
                   [](const std::string& bytes) { return bytes.substr(std::min(kBlock, bytes.size())); }});
}

}  // namespace

std::vector<Damage> damages(const std::string& other) {
    std::vector<Damage> all;
    addFlips(all);
    addCuts(all);
    addExtensions(all);
    addSplices(all);
    all.push_back({"empty", [](const std::string&) { return std::string(); }});
    all.push_back({"random", [](const std::string& bytes) { return random(bytes.size()); }});
    all.push_back({"another file's", [other](const std::string&) { return other; }});
    return all;
}

}  // namespace corvalence::test
