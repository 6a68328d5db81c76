#include "components/stream_scan.h"

#include "base/record_text.h"

namespace corvalence::components {

void StreamScan::scan(const std::string& path, const Visit& visit) {
    try {
        const auto reader = source_.open(path);
        std::string line;
        for (platform::StreamEntry entry; reader->next(entry);) {
            if (path.size() + 1 + entry.name.size() > kComponentPathLimit || !isComponentPath(entry.name)) {
                account_.refuse(path + ":" + entry.name);
                continue;
            }
            line.assign(path).push_back(base::kSeparator);
            visit(line.append(entry.name));
        }
    } catch (const base::FileFailure& failure) {
        ++(source_.isNotSupported(failure) ? unsupported_ : unread_);
    }
}

bool StreamScan::scanFolders(const std::string& root, const PathList& folders, bool complete,
                             const Visit& visit, const std::function<bool()>& goesOn) {
    for (std::size_t at = 0; at < folders.size(); ++at) {
        if (!goesOn()) return false;
        if (at == 0) {
            scan(root, visit);
            if (!complete) {
                ++replaced_;
                continue;
            }
        }
        scan(std::string(folders[at]), visit);
    }
    return true;
}

void addRemarks(std::vector<Remark>& remarks, const StreamScan& scan) {
    addRemark(remarks, {"streams_unread", scan.unread(), " with streams that could not be read.", {}});
    addRemark(
        remarks,
        {"streams_unsupported", scan.unsupported(), " where this system cannot list streams at all.", {}});
    addRemark(remarks,
              {"streams_replaced",
               scan.replaced(),
               " folders without a look at their own streams: those of the root stand in their place.",
               {}});
}

}  // namespace corvalence::components
