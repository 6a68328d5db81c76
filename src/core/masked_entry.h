#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/password_stage.h"
#include "crypto/secret_text.h"

namespace corvalence::core {

/// A password as it is typed into a field that shows nothing but a row of "*", its caret at the start. Each
/// character that comes in front of the row is one more of the password; deleting a star, or typing one,
/// starts the whole entry again.
class MaskedEntry {
  public:
    enum class Typed { Taken, StartedAgain, Refused };

    MaskedEntry() { text_.reserve(kLongest); }

    /// One character, in UTF-8. Refused where the password has no room for it, or it is a control character.
    Typed type(std::string_view character);
    /// A whole text, behind what there is: taken to its last character or not at all. False where it has
    /// none, a "*" or a control character, or where the password has no room for it.
    bool paste(std::string_view text);
    /// A star was deleted.
    void startAgain() noexcept;

    /// What the field shows, one "*" a character.
    std::string stars() const { return std::string(count_, '*'); }
    std::string_view text() const noexcept { return text_.view(); }
    /// The password; the entry is empty afterwards.
    crypto::SecretText take();

  private:
    // Four bytes a character: the text never moves while it grows.
    static constexpr std::size_t kLongest = kPasswordLimit * 4;

    crypto::SecretText text_;
    std::size_t count_ = 0;
};

}  // namespace corvalence::core
