// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <string>
#include <vector>

class NxSensorManager;

/// The database of the scene graphs: start and end of the toolkit, the lock on the graphs and the queue of sensors.
class NYX_CORE_API NxDB {
public:
  NxDB() = delete;

  /// Starts the toolkit: the first call registers its classes. Calls are counted. To be called, as finish, by one
  /// thread at a time.
  static void init();
  /// Ends one init; the last one takes the classes out again. Without init it does nothing.
  static void finish();
  static bool isInitialized();
  /// The names of the classes that init registers, parents first.
  static std::vector<std::string> getClassNames();

  /// The lock on all scene graphs. A traversal holds the read lock; another thread changes a graph between writelock
  /// and writeunlock.
  ///
  /// All are recursive on one thread: it may read while it reads or writes, write while it writes, and write while it
  /// reads, which waits for the other readers to leave. Two threads that read and both ask to write wait for each
  /// other for ever; so only the thread that traverses may write while it reads.
  static void readlock();
  static void readunlock();
  static void writelock();
  static void writeunlock();

  /// Triggers the sensors that are queued, by priority and then in the order of scheduling, on the calling thread.
  /// Sensors that are scheduled meanwhile wait for the next call. With `isIdle`, idle sensors are triggered too.
  /// Returns the number of sensors triggered.
  static int processSensors(bool isIdle = true);
  static NxSensorManager& getSensorManager();
};
