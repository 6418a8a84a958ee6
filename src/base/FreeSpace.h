#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

// Why `bytes` more don't fit into the directory: "96 GB, /tmp has 310 MB free", which completes "... needs". Empty when
// they do, and where the system doesn't tell. `released` bytes of what lies there are given back before.
std::string whyNoRoom(const std::string& directory, std::uint64_t bytes, std::uint64_t released = 0);

}  // namespace tarvex
