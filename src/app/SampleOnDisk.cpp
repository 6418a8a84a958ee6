#include "app/SampleOnDisk.h"

#include <cstdint>
#include <vector>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

bool readsAsSample(const std::string& path, const Progress& progress, sampValues& samples) {
  TextReader in = TextReader::fromFile(path, progress);
  std::int32_t external = 0;
  in >> external;
  return in.ok() && samples.read(in);
}

std::string rowText(const sampValues& samples, std::int32_t row) {
  std::vector<double> values(static_cast<std::size_t>(samples.columns()));
  if (!samples.getRow(row, values.data())) return {};
  TextWriter text;
  text.setPrecision(sampValues::kTextPrecision);
  for (const double value : values) text << value << '\t';
  return text.text();
}

bool equalAsText(const sampValues& a, const sampValues& b, const Progress& progress) {
  if (a.rows() != b.rows() || a.columns() != b.columns()) return false;
  for (std::int32_t row = 0; row < a.rows(); ++row) {
    const std::string text = rowText(a, row);
    if (text.empty() || text != rowText(b, row) || !progress.report(row, a.rows())) return false;
  }
  return true;
}

}  // namespace

bool fileHoldsSample(const std::string& path, const PrepConfiguration& prep, const Progress& progress) {
  constexpr double kReading = 0.5;  // of the time, roughly
  PrepConfiguration read;
  std::string message;
  const Progress reading = progress.part(0.0, kReading);
  if (!readsAsSample(path, reading, read.samples) &&
      (prep.external != 1 || progress.stopped() || !loadExternalSample(path, read, message, reading)))
    return false;
  return equalAsText(prep.samples, read.samples, progress.part(kReading, 1.0));
}

}  // namespace tarvex
