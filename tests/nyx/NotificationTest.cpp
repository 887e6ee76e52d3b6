// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/misc/NxChildList.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/sensors/NxFieldSensor.h>
#include <Nyx/sensors/NxIdleSensor.h>
#include <Nyx/sensors/NxNodeSensor.h>
#include <Nyx/sensors/NxOneShotSensor.h>
#include <Nyx/sensors/NxSensorManager.h>

#include <functional>
#include <thread>

namespace {

/// A sensor of class S whose function is any callable.
template <class S>
struct Watch {
  explicit Watch(std::function<void()> f)
      : function(std::move(f))
      , sensor(&Watch::call, this) {}
  static void call(void* data, NxSensor*) { static_cast<Watch*>(data)->function(); }

  std::function<void()> function;
  S sensor;
};

} // namespace

class NotificationTest : public ToolkitTest {};

TEST_F(NotificationTest, ChangeGivesEveryNodeAboveANewUniqueId) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSeparator* const left = new NxSeparator;
  NxSeparator* const right = new NxSeparator;
  TestNumber* const leaf = new TestNumber;
  root->addChild(left);
  root->addChild(right);
  left->addChild(leaf);
  right->addChild(leaf);
  const uint64_t former = std::max({root->getNodeId(), left->getNodeId(), right->getNodeId(), leaf->getNodeId()});
  leaf->size = 2.f;
  std::vector<uint64_t> ids{leaf->getNodeId(), left->getNodeId(), right->getNodeId(), root->getNodeId()};
  std::sort(ids.begin(), ids.end());
  EXPECT_GT(ids.front(), former);
  EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
}

TEST_F(NotificationTest, NodeReachedOnTwoWaysIsToldOnce) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSeparator* const left = new NxSeparator;
  TestNumber* const leaf = new TestNumber;
  root->addChild(left);
  root->addChild(leaf);
  root->addChild(leaf);
  left->addChild(leaf);
  int calls = 0;
  Watch<NxNodeSensor> watch([&calls] { ++calls; });
  watch.sensor.setPriority(0);
  watch.sensor.attach(root);
  leaf->touch();
  EXPECT_EQ(calls, 1);
}

TEST_F(NotificationTest, NotificationOffShieldsWhatIsAboveAndTheOwnIdGrows) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  TestNumber* const leaf = new TestNumber;
  root->addChild(leaf);
  EXPECT_TRUE(leaf->enableNotify(false));
  const uint64_t rootId = root->getNodeId(), leafId = leaf->getNodeId();
  leaf->size = 2.f;
  EXPECT_EQ(root->getNodeId(), rootId);
  EXPECT_GT(leaf->getNodeId(), leafId);
  EXPECT_FALSE(leaf->enableNotify(true));
  leaf->touch();
  EXPECT_GT(root->getNodeId(), rootId);
}

TEST_F(NotificationTest, SensorOfPriorityZeroFiresAtOnceWithItsTrigger) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  float sizeSeen = 0.f;
  NxField* trigger = nullptr;
  NxFieldSensor* sensor = nullptr;
  Watch<NxFieldSensor> watch([&] {
    sizeSeen = node->size.getValue();
    trigger = sensor->getTriggerField();
  });
  sensor = &watch.sensor;
  sensor->setPriority(0);
  sensor->attach(&node->size);
  node->number = 1;
  EXPECT_EQ(sizeSeen, 0.f);
  node->size = 3.f;
  EXPECT_EQ(sizeSeen, 3.f);
  EXPECT_EQ(trigger, &node->size);
  EXPECT_EQ(sensor->getTriggerField(), nullptr);
  EXPECT_FALSE(sensor->isScheduled());
}

TEST_F(NotificationTest, TouchFiresWithoutATriggerField) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  int withField = 0, without = 0;
  NxNodeSensor* sensor = nullptr;
  Watch<NxNodeSensor> watch([&] { ++(sensor->getTriggerField() ? withField : without); });
  sensor = &watch.sensor;
  sensor->setPriority(0);
  sensor->attach(node);
  node->touch();
  EXPECT_EQ(withField, 0);
  EXPECT_EQ(without, 1);
  node->number = 2;
  EXPECT_EQ(withField, 1);
}

TEST_F(NotificationTest, PriorityZeroComesFirstWhateverTheOrderOfAttaching) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  root->addChild(node); // The parent stands first among the node's auditors.
  std::string order;
  Watch<NxNodeSensor> rootWatch([&order] { order += "root "; });
  rootWatch.sensor.setPriority(0);
  rootWatch.sensor.attach(root);
  Watch<NxNodeSensor> nodeWatch([&order] { order += "node "; });
  nodeWatch.sensor.setPriority(0);
  nodeWatch.sensor.attach(node);
  node->touch();
  EXPECT_EQ(order, "node root ");
}

TEST_F(NotificationTest, DelayedSensorsWaitForTheQueueAndFireOnceByPriority) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  std::string order;
  Watch<NxNodeSensor> late([&order] { order += "late "; });
  Watch<NxNodeSensor> early([&order] { order += "early "; });
  early.sensor.setPriority(10);
  late.sensor.attach(node);
  early.sensor.attach(node);
  node->touch();
  node->touch();
  EXPECT_EQ(order, "");
  EXPECT_TRUE(late.sensor.isScheduled());
  EXPECT_EQ(NxDB::processSensors(), 2);
  EXPECT_EQ(order, "early late ");
  EXPECT_EQ(NxDB::processSensors(), 0);
  node->touch();
  late.sensor.setPriority(1);
  NxDB::processSensors();
  EXPECT_EQ(order, "early late late early ");
}

TEST_F(NotificationTest, SensorsScheduledWhileTheQueueIsProcessedWait) {
  int calls = 0;
  NxOneShotSensor* again = nullptr;
  Watch<NxOneShotSensor> watch([&] {
    ++calls;
    again->schedule();
  });
  again = &watch.sensor;
  again->schedule();
  EXPECT_EQ(NxDB::processSensors(), 1);
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(again->isScheduled());
  again->unschedule();
  EXPECT_EQ(NxDB::processSensors(), 0);
}

TEST_F(NotificationTest, WorkerMaySchedule) {
  int calls = 0;
  std::thread::id calledOn;
  Watch<NxOneShotSensor> watch([&] {
    ++calls;
    calledOn = std::this_thread::get_id();
  });
  int wakeUps = 0;
  NxDB::getSensorManager().setChangedCallback([](void* data) { ++*static_cast<int*>(data); }, &wakeUps);
  std::thread worker([&watch] {
    NxDB::writelock();
    watch.sensor.schedule();
    watch.sensor.schedule();
    NxDB::writeunlock();
  });
  worker.join();
  NxDB::getSensorManager().setChangedCallback(nullptr, nullptr);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(wakeUps, 1);
  EXPECT_EQ(NxDB::processSensors(), 1);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(calledOn, std::this_thread::get_id());
}

TEST_F(NotificationTest, IdleSensorRepeatsUntilUnscheduled) {
  int calls = 0;
  Watch<NxIdleSensor> watch([&calls] { ++calls; });
  EXPECT_TRUE(watch.sensor.isIdleOnly());
  watch.sensor.schedule();
  EXPECT_EQ(NxDB::processSensors(false), 0);
  EXPECT_EQ(NxDB::processSensors(), 1);
  EXPECT_EQ(NxDB::processSensors(), 1);
  watch.sensor.unschedule();
  EXPECT_EQ(NxDB::processSensors(), 0);
  EXPECT_EQ(calls, 2);
}

TEST_F(NotificationTest, SensorIsDetachedWhenItsNodeOrFieldDies) {
  int fired = 0, deleted = 0;
  Watch<NxNodeSensor> nodeWatch([&fired] { ++fired; });
  Watch<NxFieldSensor> fieldWatch([&fired] { ++fired; });
  const auto onDelete = [](void* data, NxSensor*) { ++*static_cast<int*>(data); };
  nodeWatch.sensor.setPriority(0);
  nodeWatch.sensor.setDeleteCallback(onDelete, &deleted);
  fieldWatch.sensor.setDeleteCallback(onDelete, &deleted);
  {
    const NbRefPtr<TestNumber> node(new TestNumber);
    nodeWatch.sensor.attach(node);
    fieldWatch.sensor.attach(&node->size);
  }
  EXPECT_EQ(deleted, 2);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(nodeWatch.sensor.getAttachedNode(), nullptr);
  EXPECT_EQ(fieldWatch.sensor.getAttachedField(), nullptr);
}

TEST_F(NotificationTest, SensorsMayDetachThemselvesAndOthersWhileTheyFire) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  int calls = 0;
  Watch<NxNodeSensor> second([&calls] { ++calls; });
  Watch<NxNodeSensor>* firstPointer = nullptr;
  Watch<NxNodeSensor> first([&] {
    ++calls;
    firstPointer->sensor.detach();
    second.sensor.detach();
  });
  firstPointer = &first;
  for (Watch<NxNodeSensor>* watch : {&first, &second}) {
    watch->sensor.setPriority(0);
    watch->sensor.attach(node);
  }
  node->touch();
  node->touch();
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(node->getAuditors().isEmpty());
}

TEST_F(NotificationTest, FieldSensorFiresAlsoWhileTheContainerIsSilent) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  int calls = 0;
  Watch<NxFieldSensor> watch([&calls] { ++calls; });
  watch.sensor.setPriority(0);
  watch.sensor.attach(&node->size);
  node->enableNotify(false);
  node->size = 2.f;
  EXPECT_EQ(calls, 1);
  node->size.enableNotify(false);
  node->size = 3.f;
  EXPECT_EQ(calls, 1);
}

TEST_F(NotificationTest, ChildListNotifiesItsOwnerAndKeepsReferences) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
  uint64_t id = root->getNodeId();
  const auto expectChanged = [&] {
    EXPECT_GT(root->getNodeId(), id);
    id = root->getNodeId();
  };
  NxChildList& list = *root->getChildren();
  list.append(a);
  expectChanged();
  list.insert(b, 0);
  expectChanged();
  EXPECT_EQ(list[0], b.get());
  EXPECT_EQ(list.find(a), 1);
  list.set(0, a);
  expectChanged();
  EXPECT_EQ(b->getRefCount(), 1);
  EXPECT_EQ(a->getRefCount(), 3);
  EXPECT_EQ(a->getAuditors().getParents(), (std::vector<NxBase*>{root, root}));
  list.remove(1);
  expectChanged();
  list.truncate(0);
  expectChanged();
  EXPECT_EQ(a->getRefCount(), 1);
  EXPECT_TRUE(a->getAuditors().isEmpty());
  list.insert(nullptr, 0);
  list.insert(a, 1);
  list.remove(0);
  list.truncate(1);
  EXPECT_EQ(takeTexts().size(), 4u);
  EXPECT_EQ(root->getNodeId(), id);
}
