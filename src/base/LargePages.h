#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>

namespace tarvex {

// Asks for pages of two megabytes behind memory of that size and more whose values are to be fetched from all over it.
// Nothing comes of it where the system has none.
inline void useLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t kPage = std::uintptr_t{2} << 20;
  const auto from = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t first = (from + kPage - 1) / kPage * kPage;
  const std::uintptr_t last = (from + bytes) / kPage * kPage;
  // A failure leaves the pages as they are.
  if (first < last) static_cast<void>(::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE));
#endif
}

}  // namespace tarvex
