#pragma once

#include <string>

namespace tarvex {

class sampValues;

// SHA-256, in hexadecimal, of the lines of the table as its text form lists them, without the three counts in front:
// what "sed -n '5,$p'" of a sample file shows, up to the table's end. Empty when the table can't be read.
std::string sampleChecksum(const sampValues& samples);

}  // namespace tarvex
