#pragma once

#include "crypto/sealed_stream.h"

namespace corvalence::crypto {

/// Adds to the end of a sealed text, read by rule A, in place: afterwards the file holds the same bytes as if
/// the whole text were sealed anew. Only a short last block is sealed again, with its own text in front, so
/// that whatever was there opens at every instant, and of what is added as much as reached the file. Bytes
/// behind the last whole block, which an addition that was ended by force leaves, are cut off.
class SealAppender {
  public:
    /// `file` is open for reading and writing, at any position. Throws base::FileFailure.
    SealAppender(platform::File& file, const SessionKey& key, const ChainValue& chain);

    /// Whether the text so far is empty or ends with a line feed.
    bool isAtLineBegin() const noexcept { return isAtLineBegin_; }

    void write(base::ByteView plain) { writer_.write(plain); }
    /// Hands over what fills whole blocks.
    void push() { writer_.push(); }
    /// Seals the rest and brings everything to the device.
    void finish();

  private:
    platform::File& file_;
    SealWriter writer_;
    bool isAtLineBegin_ = true;
};

}  // namespace corvalence::crypto
