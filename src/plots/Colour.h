#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarvex {

// A colour in components of 16 bits, as the system's lists give them.
struct Colour {
  std::uint16_t red = 0;
  std::uint16_t green = 0;
  std::uint16_t blue = 0;
  bool operator==(const Colour&) const = default;
};

constexpr Colour colourOfBytes(int red, int green, int blue) {
  constexpr int kSpread = 257;  // 255 becomes 65535
  return {static_cast<std::uint16_t>(red * kSpread), static_cast<std::uint16_t>(green * kSpread),
          static_cast<std::uint16_t>(blue * kSpread)};
}

// The value of a colour's name, "Medium Slate Blue" and the like, as the window systems have it; black for a name that
// isn't used here.
Colour namedColour(std::string_view name);

// Colours of pie slices by position: of FAST, and of all others. Black past the end of the list.
Colour fastSliceColour(std::size_t position);
Colour sliceColour(std::size_t position);

}  // namespace tarvex
