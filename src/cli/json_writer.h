#pragma once

#include <concepts>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "base/file_time.h"

namespace corvalence::cli {

/// Writes one JSON document (RFC 8259) to a stream as it goes, so that a list of any length needs no memory.
/// Inside an object every call names its member, inside an array the name stays empty.
class JsonWriter {
  public:
    explicit JsonWriter(std::ostream& out) : out_(out) {}
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void beginObject(std::string_view name = {});
    void beginArray(std::string_view name = {});
    /// Ends what was begun last; behind the last one the document is closed by a line feed.
    void end();
    /// Ends everything that is open.
    void endAll();
    bool wasBegun() const noexcept { return wasBegun_; }
    /// Ends what is open within the outermost, or begins an object where nothing was begun: from there on the
    /// outermost takes members. False where the document is complete.
    bool backToOutermost();

    void text(std::string_view name, std::string_view value);
    void number(std::string_view name, std::integral auto value) { raw(name, std::to_string(value)); }
    void flag(std::string_view name, bool value) { raw(name, value ? "true" : "false"); }
    void null(std::string_view name) { raw(name, "null"); }
    void time(std::string_view name, base::FileTime value);
    /// A path: readable under `name`, and where it is no UTF-8 its exact bytes under `name`_base64 as well.
    void path(std::string_view name, std::string_view value);

  private:
    void raw(std::string_view name, std::string_view value);
    void begin(std::string_view name, char opening, char closing);

    std::ostream& out_;
    std::string closings_;
    bool isFirst_ = true;
    bool wasBegun_ = false;
};

}  // namespace corvalence::cli
