#pragma once

#include <functional>
#include <string>
#include <vector>

namespace corvalence::test {

/// Something that can happen to the bytes of a file.
struct Damage {
    std::string name;
    std::function<std::string(const std::string&)> apply;
};

/// Flipped bits by region, cuts at many lengths, extensions, blocks that changed places, and whole contents
/// put in its stead, `other` being those of another file. Every one changes the bytes of a file that has at
/// least 64.
std::vector<Damage> damages(const std::string& other);

}  // namespace corvalence::test
