#pragma once

class QString;

namespace tarvex {

// A line on standard error: what the program says when there is no panel to say it.
void print(const QString& text);

}  // namespace tarvex
