#include "platform/linux/pseudo_file_system.h"

#include <linux/magic.h>
#include <sys/statfs.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

// Those in memory that hold files which somebody wrote (tmpfs, devtmpfs) are not among them.
constexpr std::uint32_t kFuseControl = 0x6573'5543;
constexpr std::uint32_t kMessageQueues = 0x1980'0202;
constexpr std::uint32_t kConfigFs = 0x6265'6570;
constexpr std::uint32_t kRpcPipes = 0x6759'6969;
constexpr std::array<std::uint32_t, 20> kPseudoTypes = {
    PROC_SUPER_MAGIC, SYSFS_MAGIC,   CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC, DEVPTS_SUPER_MAGIC,
    DEBUGFS_MAGIC,    TRACEFS_MAGIC, SECURITYFS_MAGIC,   PSTOREFS_MAGIC,      BPF_FS_MAGIC,
    SELINUX_MAGIC,    SMACK_MAGIC,   BINFMTFS_MAGIC,     EFIVARFS_MAGIC,      NSFS_MAGIC,
    HUGETLBFS_MAGIC,  kFuseControl,  kMessageQueues,     kConfigFs,           kRpcPipes};

}  // namespace

bool isPseudoFileSystem(const std::string& folder) {
    struct statfs data {};
    if (::statfs(systemPath(folder), &data) != 0) return false;
    return std::find(kPseudoTypes.begin(), kPseudoTypes.end(), static_cast<std::uint32_t>(data.f_type)) !=
           kPseudoTypes.end();
}

}  // namespace corvalence::platform::linux_system
