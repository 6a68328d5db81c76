#pragma once

#include "world.h"

namespace corvalence::test {

/// A first database with one listed file of this content; gives the file's path.
inline std::string listFile(World& world, const std::string& name, const std::string& content) {
    std::string path = world.write(name, content);
    world.create();
    world.add({name});
    return path;
}

}  // namespace corvalence::test
