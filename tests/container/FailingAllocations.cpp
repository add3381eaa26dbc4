#include "tests/container/FailingAllocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace tovi::test {
namespace {

std::atomic<long> live{0};

thread_local bool isArmed = false;
thread_local bool hasFailed = false;
thread_local bool staysFailing = false;
thread_local std::size_t remaining = 0;

bool failsNow() {
    if (!isArmed) return false;
    if (hasFailed) return staysFailing;
    if (remaining > 0) {
        --remaining;
        return false;
    }
    hasFailed = true;
    return true;
}

void* allocate(std::size_t size) {
    if (failsNow()) return nullptr;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block) ++live;
    return block;
}

void release(void* block) {
    if (!block) return;
    --live;
    std::free(block);
}

}  // namespace

FailingAllocations::FailingAllocations(std::size_t index, Extent extent) {
    remaining = index;
    hasFailed = false;
    staysFailing = extent == Extent::forGood;
    isArmed = true;
}

FailingAllocations::~FailingAllocations() { isArmed = false; }

bool FailingAllocations::failed() const { return hasFailed; }

long liveBlocks() { return live; }

}  // namespace tovi::test

void* operator new(std::size_t size) {
    if (void* block = tovi::test::allocate(size)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return tovi::test::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return tovi::test::allocate(size);
}
void operator delete(void* block) noexcept { tovi::test::release(block); }
void operator delete[](void* block) noexcept { tovi::test::release(block); }
void operator delete(void* block, std::size_t) noexcept { tovi::test::release(block); }
void operator delete[](void* block, std::size_t) noexcept { tovi::test::release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { tovi::test::release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { tovi::test::release(block); }
