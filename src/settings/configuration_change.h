#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"
#include "settings/configuration_keys.h"

namespace corvalence::settings {

/// A user's entry for a key in the form in which it is stored: data folders get a closing separator. Paths
/// come absolute already.
std::string storedText(const ConfigurationKey& key, const std::string& text, const base::PathRules& paths);

/// Why a key cannot be set to `text`, in its stored form; nothing where it can. Beyond its form and range: a
/// data folder has to be there, and no rule of the configuration sheet may break. A rule that is broken
/// already keeps nobody from changing something else.
std::optional<std::string> findChangeFault(platform::Platform& platform, const ConfigurationKey& key,
                                           const std::string& text);

}  // namespace corvalence::settings
