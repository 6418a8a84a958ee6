#pragma once

#include <optional>
#include <string>

#include "base/Progress.h"

namespace tarvex {

struct Figure;

enum class PictureFormat { Svg, Pdf, Ps, Eps, Png };

// "svg", "pdf", "ps", "eps", "png", whatever their case; nothing for any other.
std::optional<PictureFormat> pictureFormat(const std::string& word);
// By the suffix of a file name.
std::optional<PictureFormat> pictureFormatOf(const std::string& path);

// The file's content, at the figure's own size; PNG at 96 pixels an inch times `zoom`. The same figure gives the same
// bytes. Empty when it can't be made: no font, no memory; or when it was stopped.
std::string renderPicture(const Figure& figure, PictureFormat format, double zoom = 1.0, const Progress& progress = {});

// What is said, before the reason, of a picture or a report that can't be written.
inline constexpr const char* kCannotCreate = "I cannot create the file";

// Writes the picture; an old file is replaced only by a complete new one. False, with `message` naming path and reason,
// when it can't be made or written, or when it was stopped.
[[nodiscard]] bool savePicture(const std::string& path, const Figure& figure, PictureFormat format,
                               std::string& message, double zoom = 1.0, const Progress& progress = {});

}  // namespace tarvex
