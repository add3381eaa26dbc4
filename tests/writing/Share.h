#pragma once

#include <cstddef>

namespace tovi::test {

#if defined(__SANITIZE_ADDRESS__)
#define TOVI_TESTS_ARE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TOVI_TESTS_ARE_SANITIZED 1
#endif
#endif

/// Of what is tried many thousand times, sanitizers, under which it takes twenty times as long, try
/// one in so many; which ones differ from scenario to scenario.
#ifdef TOVI_TESTS_ARE_SANITIZED
inline constexpr std::size_t oneIn = 16;
#else
inline constexpr std::size_t oneIn = 1;
#endif

/// The same of random sequences.
#ifdef TOVI_TESTS_ARE_SANITIZED
inline constexpr unsigned oneSequenceIn = 8;
#else
inline constexpr unsigned oneSequenceIn = 1;
#endif

}  // namespace tovi::test
