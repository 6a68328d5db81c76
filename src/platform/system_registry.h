#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvalence::platform {

enum class RegistryRoot { ClassesRoot, CurrentUser, LocalMachine, Users, CurrentConfig };

struct RegistryRootName {
    RegistryRoot root;
    std::string_view name;
};

/// The five roots in the order in which they are walked.
inline constexpr std::array kRegistryRoots = {
    RegistryRootName{RegistryRoot::ClassesRoot, "HKEY_CLASSES_ROOT"},
    RegistryRootName{RegistryRoot::CurrentUser, "HKEY_CURRENT_USER"},
    RegistryRootName{RegistryRoot::LocalMachine, "HKEY_LOCAL_MACHINE"},
    RegistryRootName{RegistryRoot::Users, "HKEY_USERS"},
    RegistryRootName{RegistryRoot::CurrentConfig, "HKEY_CURRENT_CONFIG"},
};

/// Type numbers whose values are texts; any other number may occur.
namespace registry_type {
inline constexpr std::uint32_t kText = 1;
inline constexpr std::uint32_t kExpandableText = 2;
inline constexpr std::uint32_t kLink = 6;
}  // namespace registry_type

struct RegistryValue {
    /// Empty for the key's default value. Any characters, NUL among them.
    std::string name;
    std::uint32_t type = 0;
    /// The bytes as the system keeps them: UTF-16 for texts on Windows.
    std::vector<std::uint8_t> data;
    /// A text in UTF-8, up to its end or that of the data, without the terminator but with every NUL in
    /// front of it. Empty for the other types.
    std::string text;
    /// False where the system names the value but refuses to give it; type, data and text are then empty.
    bool isReadable = true;
    /// It comes from a place that only the machine's administrator can read: a secret, as like as not.
    bool isProtected = false;
};

struct RegistryKeyNames {
    std::vector<std::string> names;
    /// False where the system broke the listing off before its end.
    bool isComplete = true;
};

/// One open key. Holds one value at a time, whatever the size of the key. Serves one thread.
class RegistryKeyReader {
  public:
    virtual ~RegistryKeyReader() = default;

    /// Goes to the next value of the key, in an order that stays as long as the key is not changed; false
    /// behind the last. `value` is filled anew; passing the same object again saves memory.
    virtual bool nextValue(RegistryValue& value) = 0;
    /// The names of the keys directly below, in an order that stays as long as none is added or removed.
    virtual RegistryKeyNames subKeys() = 0;
};

/// A tree of keys and typed values below five roots: the registry on Windows, what stands in for it on Linux.
/// Nothing here changes it.
class SystemRegistry {
  public:
    virtual ~SystemRegistry() = default;

    /// Opens a key by its path below the root, names parted by backslashes; the empty path is the root. Uses
    /// the right to read for backup where the caller holds it. Null where the key is missing or must not be
    /// read.
    virtual std::unique_ptr<RegistryKeyReader> open(RegistryRoot root, const std::string& keyPath) = 0;
};

}  // namespace corvalence::platform
