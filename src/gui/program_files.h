#pragma once

#include "core/self_check.h"
#include "crypto/md5.h"

namespace corvalence::gui {

/// The program's own files, and the digest that its help had when it was built.
struct ProgramFiles {
    core::SelfCheckFiles files;
    crypto::Md5::Digest builtHelp;
};

}  // namespace corvalence::gui
