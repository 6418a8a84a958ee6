#pragma once

#include <string>

namespace tarvex {

// The directory of the files that come with the program: the environment's TARVEX_SHARE, else the one that lies beside
// the executable's directory, else that of the source tree which holds the build. Empty when there is none.
std::string shareDirectory();

}  // namespace tarvex
