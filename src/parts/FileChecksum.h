#pragma once

#include <string>

namespace tarvex {

// By this it is seen whether a file still holds what it held: its size and a checksum of its bytes as text, 64 bits by
// the method of Fowler, Noll and Vo. Empty when it can't be read.
std::string fileChecksum(const std::string& path);

}  // namespace tarvex
