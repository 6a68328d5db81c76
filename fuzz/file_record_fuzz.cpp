// An unsealed File Contents database: its lines, its end, its records.

#include <string>

#include "files/file_record.h"
#include "files/record_reader.h"
#include "fuzz_target.h"
#include "memory_file.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvalence;
    constexpr std::size_t kWidth = 32;
    test::MemoryFile file;
    file.bytes.assign(data, data + size);
    files::RecordReader reader(file, size, kWidth);
    std::uint64_t end = 0;
    for (std::string_view line; reader.next(line);) {
        fuzz::require(!line.empty(), "a line has bytes");
        end += line.size();
        fuzz::require(end <= size && reader.offset() == end, "lines follow one another");
        const auto record = files::FileRecord::parse(line, kWidth);
        if (!record) continue;
        const std::string rendered = record->render();
        const auto again = files::FileRecord::parse(rendered, kWidth);
        fuzz::require(again && again->render() == rendered, "a record comes back as it was written");
        fuzz::require(files::pathOfLine(line) == record->path, "a record's path is its line's");
    }
    fuzz::require(size - end < 16, "no more than a stale tail is left over");
    return 0;
}
