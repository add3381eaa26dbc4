#pragma once

#include <cstddef>
#include <string>

namespace tovi::test {

/// Looks at every block of memory that is given back while this object lives, and counts those that
/// hold a text. One at a time.
class FreedMemory {
public:
    explicit FreedMemory(std::string text);
    ~FreedMemory();
    FreedMemory(const FreedMemory&) = delete;
    FreedMemory& operator=(const FreedMemory&) = delete;

    std::size_t findings() const;

private:
    std::string text_;
};

}  // namespace tovi::test
