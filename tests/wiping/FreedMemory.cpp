#include "tests/wiping/FreedMemory.h"

#include <malloc.h>

#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

namespace tovi::test {
namespace {

std::string_view wanted;
std::size_t found = 0;

void release(void* block) noexcept {
    if (block == nullptr) return;
    if (!wanted.empty()) {
        const std::string_view contents(static_cast<const char*>(block), malloc_usable_size(block));
        // The text that is looked for is no finding.
        if (contents.data() != wanted.data() && contents.find(wanted) != std::string_view::npos)
            ++found;
    }
    std::free(block);
}

}  // namespace

FreedMemory::FreedMemory(std::string text) : text_(std::move(text)) {
    found = 0;
    wanted = text_;
}

FreedMemory::~FreedMemory() { wanted = {}; }

std::size_t FreedMemory::findings() const { return found; }

}  // namespace tovi::test

void* operator new(std::size_t size) {
    // Nothing of an earlier life may count.
    if (void* block = std::calloc(1, size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept { tovi::test::release(block); }
void operator delete(void* block, std::size_t) noexcept { tovi::test::release(block); }
