#pragma once

#include <string>

#include "plots/savePicture.h"
#include "postproc/UaStats.h"

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;

// Writes the pictures of all that was computed into `directory`, which is made when it doesn't exist: of each variable
// its histogram and cumulative curve, its measures, a cobweb and scattergrams against its strongest factors. False,
// with a message, when one of them can't be made or written; then none appears.
[[nodiscard]] bool writePictureFiles(const PrepConfiguration& prep, const ModelConfiguration& model,
                                     const VelsConfiguration& vels, const std::string& directory, PictureFormat format,
                                     HistogramScale scale, std::string& message);

// Saves one picture. False with the message of its kind and the path, or that there is no font to draw texts with.
enum class PictureKind { Uncertainty, Other };
[[nodiscard]] bool writePicture(const std::string& path, const Figure& figure, PictureFormat format, double zoom,
                                PictureKind kind, std::string& message);

}  // namespace tarvex
