// A line of the Database Index, and the test that proves a password by it.

#include <string>

#include "fuzz_target.h"
#include "store/index_record.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvalence;
    const std::string_view line = fuzz::textOf(data, size);
    const bool proves = store::provesPassword(line);
    const auto record = store::IndexRecord::parse(line);
    if (!record) return 0;
    const std::string rendered = record->render();
    fuzz::require(store::provesPassword(rendered), "a written record proves the password");
    const auto again = store::IndexRecord::parse(rendered);
    fuzz::require(again && again->render() == rendered, "a record comes back as it was written");
    fuzz::require(proves || line.find("\x7F\n") == std::string_view::npos,
                  "a whole record proves the password");
    return 0;
}
