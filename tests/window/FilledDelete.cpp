// Fills the memory of every object that is deleted, so that code that still uses one stops the tests instead
// of finding what happens to be left there. The program's own delete is the library's.
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// Called through a variable, since a compiler leaves out what is written right before free().
void* (*volatile fill)(void*, int, std::size_t) = std::memset;

}  // namespace

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t size) noexcept {
    if (memory != nullptr) fill(memory, 0xDD, size);
    std::free(memory);
}
