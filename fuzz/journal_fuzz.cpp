// The journal of working copies, as a run finds it that follows one that was ended by force. The first byte
// says whether its lines get the sums that they need to be believed.

#include <string>

#include "base/hex_text.h"
#include "crypto/md5.h"
#include "crypto/working_files.h"
#include "fuzz_target.h"
#include "memory_file_system.h"

namespace {

using namespace corvalence;

std::string withSums(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::string line(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        lines += line + base::hexText(crypto::Md5::of(base::bytesOf(line))).substr(0, 8) + "\n";
    }
    return lines;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view text = fuzz::textOf(data + 1, size - 1);
    const std::string journal = *data % 2 == 0 ? withSums(text) : std::string(text);
    fuzz::MemoryFileSystem files;
    files.put("journal", base::bytesOf(journal));
    // Numbers 2 and 3 are the user's; 4 may be what the journal means.
    files.put("a", base::bytesOf("the user's own"));
    files.put("db", base::bytesOf("sealed"));
    files.put("db.plain", base::bytesOf("plain"));
    const auto believed = [&](std::uint64_t number) {
        // What stands behind its digits is passed over.
        return journal.find("\x7F" + std::to_string(number)) != std::string::npos;
    };
    try {
        crypto::WorkingFiles working(files, "journal");
        working.clearLeftovers();
        for (const crypto::PendingSave& save : working.pendingSaves())
            fuzz::require(save.beside.empty() || files.entries.contains(save.beside), "a save lies there");
        working.pendingSettled();
        fuzz::require(files.entries.at("journal").file->bytes.empty() || !working.uncleared().empty(),
                      "the journal ends empty, or says why not");
    } catch (const base::FileFailure&) {
        // The start tells it and goes no further.
    } catch (const std::out_of_range&) {
        fuzz::require(believed(1), "the journal stays");
    }
    const auto holds = [&](const char* path, std::string_view content, std::uint64_t number) {
        const auto found = files.entries.find(path);
        return found != files.entries.end() && found->second.number == number &&
               base::textOf(found->second.file->bytes) == content;
    };
    const bool moved = journal.find("move") != std::string::npos;
    fuzz::require(holds("a", "the user's own", 2) || believed(2) || moved,
                  "a file of another number is let be");
    fuzz::require(holds("db", "sealed", 3) || believed(3) || moved, "a file of another number is let be");
    return 0;
}
