#pragma once

#include <memory>
#include <string>

namespace tarvex {

class Distribution;
class Factor;

// The expectation of the whole distribution, truncated or not. Distribution::mean() leaves out the lower bound of a
// `Beta`.
double expectationOf(const Distribution& distribution);

// A factor of another kind with the name and the note of `from`, its mean and its standard deviation where the kind has
// a member with both: symmetric where it can be, without a location unless that alone makes the match. A `Constant`
// takes the mean and stands for a deviation of 0; what has no such member (a `Gamma` of a negative mean) gets the
// defaults of its kind. Truncations stay between kinds that have both. Null for a kind that there isn't.
std::unique_ptr<Factor> changeKind(const Factor& from, const std::string& typeName);

}  // namespace tarvex
