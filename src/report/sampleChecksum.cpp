#include "report/sampleChecksum.h"

#include <glib.h>

#include <memory>

#include "base/TextWriter.h"
#include "base/sampValues.h"

namespace tarvex {

std::string sampleChecksum(const sampValues& samples) {
  const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> sum(g_checksum_new(G_CHECKSUM_SHA256), &g_checksum_free);
  const bool byFactor = samples.order() == 1;
  std::vector<double> line(static_cast<std::size_t>(samples.columns()));
  for (std::int32_t i = 0; i < (byFactor ? samples.columns() : samples.rows()); ++i) {
    if (!(byFactor ? samples.getColumn(i, line) : samples.getRow(i, line.data()))) return {};
    TextWriter text;
    text.setPrecision(sampValues::kTextPrecision);
    for (const double value : line) text << value << '\t';
    text << '\n';
    g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(text.text().data()),
                      static_cast<gssize>(text.text().size()));
  }
  return g_checksum_get_string(sum.get());
}

}  // namespace tarvex
