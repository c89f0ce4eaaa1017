// What the C++ library does when code misuses it or memory ends. Its own versions would bring messages that
// nobody reads, and with them texts of two kinds, a formatter and a reader of mangled names: more than a
// fifth of the whole program.
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

namespace {

/// Ends the handler that it comes from: the window procedure's last barrier logs that, and Kardel goes on.
struct Misuse final : std::exception {};

}  // namespace

// The names are the library's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl58-cpp)
namespace __gnu_cxx {
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

// All that stand in one file of the library: where one is left out, that file comes along and has the others
// once more.
void __throw_bad_alloc() {
    throw bad_alloc();
}
void __throw_bad_array_new_length() {
    throw bad_alloc();
}
void __throw_bad_cast() {
    throw Misuse();
}
void __throw_bad_exception() {
    throw Misuse();
}
void __throw_bad_typeid() {
    throw Misuse();
}
void __throw_domain_error(const char*) {
    throw Misuse();
}
void __throw_invalid_argument(const char*) {
    throw Misuse();
}
void __throw_length_error(const char*) {
    throw Misuse();
}
void __throw_logic_error(const char*) {
    throw Misuse();
}
void __throw_out_of_range(const char*) {
    throw Misuse();
}
void __throw_overflow_error(const char*) {
    throw Misuse();
}
void __throw_range_error(const char*) {
    throw Misuse();
}
void __throw_runtime_error(const char*) {
    throw Misuse();
}
void __throw_underflow_error(const char*) {
    throw Misuse();
}
void __throw_out_of_range_fmt(const char*, ...) {
    throw Misuse();
}
}  // namespace std
// NOLINTEND(bugprone-reserved-identifier,cert-dcl58-cpp)
