#pragma once

// Loops that gain from wider vector registers than those that every machine has are compiled a second time, in a
// function of their own, and hasWideUnits() says which to take. Both give the same bits: neither fuses a product with a
// sum. A function is TARVEX_WIDE, what it calls TARVEX_INLINE, so that it is compiled along.
#define TARVEX_INLINE [[gnu::always_inline]] inline

#ifdef __x86_64__
#define TARVEX_WIDE [[gnu::target("avx2")]]
#else
#define TARVEX_WIDE
#endif

namespace tarvex {

inline bool hasWideUnits() {
#ifdef __x86_64__
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has;
#else
  return false;
#endif
}

}  // namespace tarvex
