#pragma once

#include <string>

namespace tarvex {

class TextReader;

// Of a file of numbers that is read as far as its counts say: a warning ("a.out:9: '7' stands behind the last number
// and isn't read") where more than blanks follows, else nothing. Nothing can be read from `in` afterwards.
std::string textBehind(TextReader& in);

}  // namespace tarvex
