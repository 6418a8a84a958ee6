#pragma once

namespace tarvex {

class TextReader;

// Takes what is left of the line of a number. More than blanks there fails the reader: the number was not the one that
// was written.
void finishNumberLine(TextReader& in);

}  // namespace tarvex
