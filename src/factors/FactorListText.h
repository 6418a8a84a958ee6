#pragma once

#include <cstdint>

namespace tarvex {

class FactorList;
class TextReader;
class TextWriter;

// The text form of a factor list: default truncations, factor records, dependence tree, rank correlation matrix, Stein
// sample, correlation mode.
class FactorListText {
 public:
  static void write(const FactorList& list, TextWriter& out);
  // Fills an empty list. False on the first thing that doesn't fit, which the reader then describes.
  [[nodiscard]] static bool read(FactorList& list, TextReader& in);

 private:
  static void writeTree(const FactorList& list, TextWriter& out);
  static void writeMatrix(const FactorList& list, TextWriter& out);
  static void writeStein(const FactorList& list, TextWriter& out);

  static bool readTruncations(TextReader& in);
  static bool readFactors(FactorList& list, TextReader& in, std::int32_t count);
  static bool readTree(FactorList& list, TextReader& in);
  static bool isTree(const FactorList& list);
  static bool readMatrix(FactorList& list, TextReader& in);
  static bool readStein(FactorList& list, TextReader& in);
  static bool readSteinRows(FactorList& list, TextReader& in, std::int32_t rows, std::int32_t columns);
};

}  // namespace tarvex
