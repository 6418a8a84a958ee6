#pragma once

#include <functional>
#include <string>

namespace tarvex {

// Gets a title and a text for each message to the user.
using Warn = std::function<void(const std::string& title, const std::string& text)>;

// Makes the name of an output fit for expressions: characters that they can't hold become '_', and the user is told.
// False, with a message, for a name that begins with a digit; false for an empty one.
[[nodiscard]] bool fitOutputName(std::string& name, const Warn& warn);

}  // namespace tarvex
