#pragma once

#include <QString>

namespace tarvex {

class Display;

// The text that belongs to a picture of the help, such as "../help/fast.bmp": that of the file hints/fast.html beside
// it. Empty when there is none.
QString hintText(const Display& display, const QString& bitmap);

}  // namespace tarvex
