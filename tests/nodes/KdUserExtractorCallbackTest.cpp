// SPDX-License-Identifier: BSD-3-Clause
#include "extraction/KdUserExtractorCallback.h"

#include <Nyx/base/NbRefPtr.h>

#include <gtest/gtest.h>

namespace {

/// Writes down what it hears and always asks to stop.
class Protocol : public KiExtractorCallback {
public:
  std::string calls;
  void beginExtract(std::string name, bool geometry, bool topology, bool data, std::size_t numPhases) override {
    calls += "begin " + name + (geometry ? "1" : "0") + (topology ? "1" : "0") + (data ? "1" : "0") + " " +
             std::to_string(numPhases) + "; ";
  }
  void endExtract() override { calls += "end; "; }
  bool beginPhase(std::size_t phase, std::string name, std::size_t numSteps) override {
    calls += "phase " + std::to_string(phase) + " " + name + " " + std::to_string(numSteps) + "; ";
    return false;
  }
  bool endPhase() override {
    calls += "end phase; ";
    return false;
  }
  bool endStep(std::size_t step) override {
    calls += "step " + std::to_string(step) + "; ";
    return false;
  }
  double getEndStepCallPeriod() override { return 0.125; }
};

void run(KiExtractorCallback& callback) {
  callback.beginExtract("x", true, false, true, 2);
  EXPECT_TRUE(callback.beginPhase(1, "y", 3));
  EXPECT_TRUE(callback.endStep(4));
  EXPECT_TRUE(callback.endPhase());
  callback.endExtract();
}

TEST(KdUserExtractorCallback, ForwardsAllAndNeverStops) {
  Protocol user;
  const NbRefPtr<KdUserExtractorCallback> callback(new KdUserExtractorCallback(&user));
  run(*callback);
  EXPECT_EQ(user.calls, "begin x101 2; phase 1 y 3; step 4; end phase; end; ");
  EXPECT_EQ(callback->getEndStepCallPeriod(), 0.125);
}

TEST(KdUserExtractorCallback, GoesOnWithoutAnApplication) {
  const NbRefPtr<KdUserExtractorCallback> callback(new KdUserExtractorCallback(nullptr));
  run(*callback);
  EXPECT_EQ(callback->getEndStepCallPeriod(), 1.0);
}

} // namespace
