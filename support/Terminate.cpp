// The end of a program that broken code has to end. The runtime's own versions print to a console that Kardel
// does not have, and bring a reader of mangled names and a formatter with them: a sixth of the whole program.
#include <cstdlib>
#include <string>

// The names are the runtime's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl58-cpp)
namespace __gnu_cxx {
void __verbose_terminate_handler();

/// An exception that nobody caught.
void __verbose_terminate_handler() {
    std::abort();
}
}  // namespace __gnu_cxx

namespace std {
/// An index beyond a text or a vector.
void __glibcxx_assert_fail(const char*, int, const char*, const char*) noexcept {
    abort();
}
}  // namespace std
// NOLINTEND(bugprone-reserved-identifier,cert-dcl58-cpp)
