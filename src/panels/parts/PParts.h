#pragma once

#include <functional>

#include "app/PartsRequest.h"
#include "toolkit/Panel.h"

namespace tarvex {

// How a run in parts is carried out: where, in how many parts, and what becomes of a part that fails.
class PParts : public Panel {
 public:
  // Starts what is asked for; false, with the reason, when it can't be.
  using Start = std::function<bool(const PartsRequest& request, std::string& message)>;

  // `request` is what the fields show at first; on a cluster the run lies in `clusterDirectory`.
  PParts(const Display& display, const PartsRequest& request, std::string clusterDirectory, Start start,
         QWidget* parent);

  // Of use once the panel was accepted: what was started.
  const PartsRequest& request() const { return request_; }

 private:
  void start();
  void switchEngine();
  void refresh();
  PartsRequest asked();

  PartsRequest request_;
  std::string clusterDirectory_;
  Start start_;
};

}  // namespace tarvex
