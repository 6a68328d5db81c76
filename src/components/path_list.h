#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvalence::components {

/// Texts one behind the other in one piece of memory: a million paths take little more than their bytes.
class PathList {
  public:
    void add(std::string_view text) {
        text_.append(text);
        ends_.push_back(text_.size());
    }
    void clear() noexcept {
        text_.clear();
        ends_.clear();
    }
    std::size_t size() const noexcept { return ends_.size(); }
    /// Holds until the next add() or clear().
    std::string_view operator[](std::size_t at) const noexcept {
        const std::uint64_t begin = at == 0 ? 0 : ends_[at - 1];
        return std::string_view(text_).substr(begin, ends_[at] - begin);
    }

  private:
    std::string text_;
    std::vector<std::uint64_t> ends_;
};

}  // namespace corvalence::components
