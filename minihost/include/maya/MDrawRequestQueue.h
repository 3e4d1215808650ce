#pragma once

#include <vector>

#include "maya/MDrawRequest.h"

/// What is to be drawn in a view, in order.
class MDrawRequestQueue {
  public:
    void add(const MDrawRequest& request) { requests_.push_back(request); }
    bool isEmpty() const { return requests_.empty(); }
    MDrawRequest remove() {
        const MDrawRequest first = requests_.front();
        requests_.erase(requests_.begin());
        return first;
    }
    const std::vector<MDrawRequest>& requests() const { return requests_; }

  private:
    std::vector<MDrawRequest> requests_;
};
