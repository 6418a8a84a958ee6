#pragma once

class QWidget;

namespace tarvex {

struct Figure;

// What becomes of a figure outside of the program. What fails is told in a dialog over `parent`.

// As a picture on the clipboard.
void copyFigure(const Figure& figure);
// To a file that the user chooses, whose suffix says the format; false when it wasn't written.
bool exportPicture(const Figure& figure, QWidget* parent);
// The same for PostScript alone, in the words of the system's plots.
bool dumpPostscript(const Figure& figure, QWidget* parent);
// The figure's numbers as a table: on the clipboard, or, where they are too many for it, in a file.
void copyData(const Figure& figure, QWidget* parent);
bool exportData(const Figure& figure, QWidget* parent);

}  // namespace tarvex
