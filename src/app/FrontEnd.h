#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;
class InternalModel;

// The outputs of a run, one beside the other.
struct OutputLink {
  std::vector<std::string> given;  // by the model
  std::vector<std::string> kept;   // what was made of them, fit for expressions and apart
  std::vector<std::string> names;  // what they are to be called; each once
};

// Between two looks at the user's events: half of what a hand would feel.
inline constexpr std::chrono::milliseconds kEventSlice{20};

enum class MessageKind { Information, Warning, Error };

// Through this a long operation asks, tells and shows how far it is. Panels, console and tests each have their own.
class FrontEnd {
 public:
  virtual ~FrontEnd() = default;

  // A display of progress over `rows` runs appears, shows a percentage (0 to 100) and a line of status, and goes away.
  virtual void openProgress(const std::string& title, std::int32_t rows) = 0;
  virtual void progress(int percent) = 0;
  virtual void status(const std::string& text) = 0;
  virtual void closeProgress() = 0;

  // The same for a model of which only its end will be known: an animation, one frame further at each call. Also goes
  // away by closeProgress().
  virtual void openAnimation(const std::string& title, const std::string& modelName, const std::string& fileName) = 0;
  virtual void animate() = 0;

  // Serves whatever the user did meanwhile.
  virtual void drainEvents() = 0;
  // False once the user has asked to stop the operation in progress.
  virtual bool continueRun() = 0;

  virtual void message(MessageKind kind, const std::string& title, const std::string& text) = 0;
  // True for `yes`.
  virtual bool question(const std::string& title, const std::string& text, const std::string& yes,
                        const std::string& no) = 0;
  // Lets the user put the model's inputs into the order of the sample's factors. False: cancelled, and `model` is as
  // it was.
  [[nodiscard]] virtual bool linkFactors(const FactorList& factors, InternalModel& model) = 0;
  // Lets the user say which output of the project each name stands for that a model gave and that couldn't be kept as
  // it is. False: cancelled, or nobody is there to ask; the names are then those that were made of what the model gave.
  [[nodiscard]] virtual bool linkOutputs(OutputLink& link) = 0;
};

}  // namespace tarvex
