#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

class Factor;
class IntervalDistribution;

// Factors as a user writes them in a row of cells: the kind in a word and the parameters in numbers.

// The names of the kinds that a user can choose, in the order of their codes.
const std::vector<std::string>& factorKinds();
// The kind that a word means, whatever its letters' case and with blanks, hyphens and "distribution" left out; empty
// for none.
std::string kindOfWord(std::string_view word);

// A factor of that kind with these numbers as its parameters, in the order of parameters(). The last of them, if
// left out, are the defaults. It may have a parameterProblem(). Null for a kind without such parameters and for too
// many numbers.
std::unique_ptr<Factor> makeFactorOf(const std::string& typeName, const std::vector<double>& parameters);

// Appends a row: the two ends of an interval, or the value of a point, and the weight, which is `share` where the row
// has none. False, with the reason, for what the kind refuses. Requires: two or three numbers, one or two for a point.
[[nodiscard]] bool appendFields(IntervalDistribution& list, const std::vector<double>& row, double share,
                                std::string& message);

// The parameters as they are written: "0, 1, 0.001, 0.999"; of intervals "0, 1, 0.5; 2, 3, 0.5" and of points "1, 0.5;
// 2, 0.5"; of a relation its expression.
std::string factorFields(const Factor& factor);
// A factor of the kind with the parameters of such a text: numbers apart by blanks, tabs, or commas with a blank.
// Weights may be left out all together and are then equal; so may the last parameters, which stay as those of `from`,
// if that is of the kind. Judged as a whole. Null, with the reason, for what isn't taken.
std::unique_ptr<Factor> readFactorFields(const std::string& typeName, const std::string& text, const Factor* from,
                                         std::string& message);

}  // namespace tarvex
