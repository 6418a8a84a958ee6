#pragma once

#include <QString>
#include <cstdint>

namespace tarvex {

struct Axis;
struct Figure;
struct Hit;

// What a chart tells in words and numbers.

// What was hit, with its values: "run 12: x1 = 0.53, Y = 1.2". Runs count from 1, as the rows of tables do. Empty for a
// hit of another figure.
QString hitText(const Figure& figure, const Hit& hit);

// The figure for those who don't see it: its charts, their axes and how much they show.
QString figureText(const Figure& figure);

// The numbers behind the figure as a table with a row of names, one such block for each part of it, with an empty line
// between two. Fields that hold the separator are quoted.
QString figureData(const Figure& figure, QChar separator);
// How many fields figureData() writes.
std::int64_t figureDataFields(const Figure& figure);

// The value at a coordinate of an axis, which has logarithms where its scale says so.
double valueOn(const Axis& axis, double coordinate);

// 10000 as "10,000".
QString groupedNumber(std::int64_t number);

}  // namespace tarvex
