#pragma once

#include <cstddef>

/// Replaces operator new of the executable that FailingAllocations.cpp is linked into: it can fail
/// at any allocation, and counts the blocks that are out.
namespace tovi::test {

/// Makes allocation number `index` of this thread fail, counted from 0, and every later one too
/// when `forGood`, for as long as the object lives.
class FailingAllocations {
public:
    enum class Extent { once, forGood };
    explicit FailingAllocations(std::size_t index, Extent extent = Extent::once);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    /// True once an allocation failed.
    bool failed() const;
};

/// Blocks that operator new gave out and operator delete has not had back.
long liveBlocks();

}  // namespace tovi::test
