#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "crypto/secure_zero.h"

namespace corvalence::crypto {

/// A text that is overwritten before its memory is given back: passwords and unsealed contents. A text that
/// has to grow is overwritten in its old place.
class SecretText {
  public:
    SecretText() = default;
    explicit SecretText(std::string_view text) { append(text); }
    ~SecretText() { clear(); }
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;
    SecretText(SecretText&& other) noexcept { swap(other); }
    SecretText& operator=(SecretText&& other) noexcept {
        clear();
        swap(other);
        return *this;
    }

    std::string_view view() const noexcept { return text_; }
    std::size_t size() const noexcept { return text_.size(); }
    bool empty() const noexcept { return text_.empty(); }

    void reserve(std::size_t size) {
        if (size <= text_.capacity()) return;
        SecretText grown;
        grown.text_.reserve(size);
        grown.text_ = text_;
        swap(grown);
    }
    void append(std::string_view text) {
        if (text_.size() + text.size() > text_.capacity()) reserve((text_.size() + text.size()) * 2);
        text_.append(text);
    }
    void append(char c) { append(std::string_view(&c, 1)); }
    void clear() noexcept {
        secureZero(text_.data(), text_.capacity());
        text_.clear();
    }

  private:
    // A short string lies inside its object, so that a plain move would leave a copy behind.
    void swap(SecretText& other) noexcept { text_.swap(other.text_); }

    std::string text_;
};

}  // namespace corvalence::crypto
