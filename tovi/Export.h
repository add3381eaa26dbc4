#pragma once

/// Marks what the shared library gives to its users: the classes, functions and constants of the
/// installed headers. Everything else is hidden by -fvisibility=hidden.
///
/// Users of the static library define TOVI_STATIC, as the CMake target tovi::static and
/// `pkg-config --static` do: what the compiler makes of the headers for them is then theirs alone.
#if defined(__GNUC__) && !defined(TOVI_STATIC)
#define TOVI_API __attribute__((visibility("default")))
#else
#define TOVI_API
#endif
